// The planner as WebAssembly answers as the native one does.
import assert from "node:assert/strict";
import { test } from "node:test";
import { designsOfTables, difference, nativeAnswers, requestOfCommand, wasmPlanner } from "./support.js";

const planner = await wasmPlanner();
const catalogue = JSON.parse(planner.catalogue());
const examples = catalogue.tests.flatMap((each) => each.examples.map((example) => requestOfCommand(example.command)));

function compare(requests) {
  const native = nativeAnswers(requests);
  assert.equal(native.length, requests.length);
  let largest = 0;
  requests.forEach((request, i) => {
    const answer = JSON.parse(planner.ask(JSON.stringify(request)));
    const apart = difference(answer, native[i]);
    assert.ok(apart <= 1e-12, `${JSON.stringify(request)}: ${apart}\n${JSON.stringify(answer)}\n${JSON.stringify(native[i])}`);
    largest = Math.max(largest, apart);
  });
  return { answers: native, largest };
}

test("every test of the catalogue has an example", () => {
  for (const each of catalogue.tests) assert.ok(each.examples.length > 0, each.name);
});

test("examples of the catalogue are answered as natively", (t) => {
  const { answers, largest } = compare(examples);
  assert.ok(answers.every((answer) => answer.answer));
  t.diagnostic(`${examples.length} examples, largest relative difference ${largest}`);
});

test("designs of the test tables are answered as natively", (t) => {
  const designs = designsOfTables();
  assert.ok(designs.length > 90, `${designs.length} designs`);
  const { answers, largest } = compare(designs);
  assert.ok(answers.filter((answer) => answer.answer).length > 0.9 * designs.length);
  t.diagnostic(`${designs.length} designs, largest relative difference ${largest}`);
});

test("refusals are worded as natively, and the planner goes on after them", () => {
  const [first] = examples;
  compare([{ ...first, nonsense: 1 }, { test: "nothing" }, {}, { ...first, alpha: 2 }, first]);
});

test("a curve is answered as natively", () => {
  const powers = examples.filter((request) => request.question === "power");
  compare(powers.map((request) => ({ ...request, alpha: "0.01:0.2:0.005" })));
});

test("every choice of every test is answered as natively", (t) => {
  const requests = catalogue.tests.flatMap((each) => {
    const choices = [...each.power.options, ...(each.precision?.options ?? [])].filter((a) => a.choices);
    return each.examples.flatMap((example) =>
      choices.flatMap((a) => a.choices.map((word) => ({ ...requestOfCommand(example.command), [a.name]: word }))),
    );
  });
  const { answers, largest } = compare(requests);
  t.diagnostic(
    `${answers.filter((answer) => answer.answer).length} answers and ${answers.filter((answer) => answer.refusal).length} refusals, largest relative difference ${largest}`,
  );
});
