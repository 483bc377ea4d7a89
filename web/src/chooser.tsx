// Finds a test by describing the study; and a plain list of them all.
import { useState } from "preact/hooks";
import { type Catalogue, type Test, groupsOf } from "./catalogue";
import { Choices } from "./form";

const distinct = (words: string[]) => [...new Set(words)];
const ANY = "Any";

export function Chooser({ catalogue, chosen, choose }: { catalogue: Catalogue; chosen: string | undefined; choose(test: Test): void }) {
  const [family, setFamily] = useState(ANY);
  const [groups, setGroups] = useState(ANY);
  const [words, setWords] = useState("");
  const families = [ANY, ...distinct(catalogue.tests.map((test) => test.family))];
  const ofFamily = catalogue.tests.filter((test) => family === ANY || test.family === family);
  const groupWords = [ANY, ...distinct(ofFamily.map(groupsOf))];
  const wanted = words.toLowerCase().split(/\s+/).filter(Boolean);
  const found = ofFamily
    .filter((test) => groups === ANY || !groupWords.includes(groups) || groupsOf(test) === groups)
    .filter((test) => {
      const text = `${test.name} ${test.title} ${test.study}`.toLowerCase();
      return wanted.every((word) => text.includes(word));
    });
  return (
    <main class="chooser" aria-label="Choose a test">
      <h2>What is the study?</h2>
      <div class="facets">
        <div>
          <p class="question">What is compared or estimated?</p>
          <Choices legend="What is compared" options={families} chosen={families.indexOf(family)} choose={(i) => setFamily(families[i]!)} />
        </div>
        <div>
          <p class="question">In how many groups?</p>
          <Choices
            legend="How many groups"
            options={groupWords}
            chosen={Math.max(0, groupWords.indexOf(groups))}
            choose={(i) => setGroups(groupWords[i]!)}
          />
        </div>
        <label>
          <span class="question">Or search</span>
          <input type="search" value={words} placeholder="paired, correlation" onInput={(event) => setWords(event.currentTarget.value)} />
        </label>
      </div>
      <ul class="tests">
        {found.map((test) => (
          <li key={test.name}>
            <button type="button" data-test={test.name} aria-current={test.name === chosen ? "true" : undefined} onClick={() => choose(test)}>
              <strong>{test.title}</strong>
              <span>{test.study}</span>
            </button>
          </li>
        ))}
      </ul>
      {found.length === 0 && <p class="quiet">No test is described so.</p>}
    </main>
  );
}
