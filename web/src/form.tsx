// The form of a design: its fields come from the catalogue, errors stand at the field in the planner's words.
import type { ComponentChildren } from "preact";
import { type Argument, type Answered, type Catalogue, type Refusal, labelOf, shown } from "./catalogue";
import { type Design, type Form, SIZE, withPlan, withUnknown, withValue, withWay } from "./design";

interface Props {
  catalogue: Catalogue;
  design: Design;
  form: Form;
  refusal: Refusal | undefined;
  record: Answered | undefined;
  change(design: Design): void;
}

/** Texts of what was asked and found, to go on from. */
function textsOf(record: Answered | undefined): Record<string, string> {
  const texts: Record<string, string> = {};
  if (!record) return texts;
  for (const values of [record.asked, record.answer])
    for (const [name, value] of Object.entries(values))
      if (value !== null) texts[name] = Array.isArray(value) ? value.join(", ") : shownExactly(value);
  return texts;
}

const shownExactly = (value: number | string) => (typeof value === "number" ? shown(value) : value);

/** Can a search find it? (The planner has the last word.) */
const canBeFound = (a: Argument) => a.kind === "number";

export function DesignForm(props: Props) {
  const { catalogue, design, form, record, change } = props;
  const find = (unknown: string) => change(withUnknown(catalogue, design, unknown, textsOf(record)));
  const field = (a: Argument, optional = false, findable = canBeFound(a) || a === form.measure.target) => (
    <Field key={a.name} {...props} argument={a} optional={optional} find={findable ? find : undefined} />
  );
  const found = form.test.sizes.found.map((a) => a.name);
  return (
    <form class="form" autocomplete="off" onSubmit={(event) => event.preventDefault()}>
      {form.test.precision && (
        <Choices
          legend="Plan for"
          options={["Power of the test", "Precision of the estimate"]}
          chosen={design.plan === "power" ? 0 : 1}
          choose={(i) => change(withPlan(catalogue, design, i === 0 ? "power" : "precision"))}
        />
      )}
      <Group title={design.plan === "power" ? "Effect expected" : "What is estimated"}>
        <Ways
          legend="Given as"
          section={form.effect}
          choose={(from, to) => change(withWay(catalogue, design, from, to))}
        />
        {form.effect.shown.map((a) => field(a, form.effect.optional.has(a.name)))}
      </Group>
      <Group title="Sample size">
        {design.unknown === SIZE ? (
          <div class="field">
            <span class="name">
              Size <code>{found.join(", ")}</code>
            </span>
            <output class="found" aria-label="Sample size found">
              {record?.unknown === SIZE ? found.map((name) => shown(record.answer[name])).join(" + ") : "\u2026"}
            </output>
            <FindButton pressed label="sample size" press={() => undefined} />
          </div>
        ) : (
          <>
            <div class="row">
              <Ways
                legend="Given as"
                section={form.sizes}
                choose={(from, to) => change(withWay(catalogue, design, from, to))}
              />
              <FindButton pressed={false} label="sample size" press={() => find(SIZE)} />
            </div>
            {form.sizes.shown.map((a) => field(a))}
          </>
        )}
        {form.shares.map((a) => field(a, true, false))}
        {form.test.sizes.note && <p class="note">{form.test.sizes.note}</p>}
      </Group>
      <Group title={design.plan === "power" ? "The test" : "The interval"}>
        {[form.measure.target, ...form.options].map((a) => field(a))}
      </Group>
      {form.search.length > 0 && (
        <details class="group">
          <summary>Search</summary>
          {form.search.map((a) => field(a, false, false))}
        </details>
      )}
    </form>
  );
}

function Group({ title, children }: { title: string; children: ComponentChildren }) {
  return (
    <fieldset class="group">
      <legend>{title}</legend>
      {children}
    </fieldset>
  );
}

interface WaysProps {
  legend: string;
  section: Form["effect"];
  choose(from: Argument[], to: Argument[]): void;
}

function Ways({ legend, section, choose }: WaysProps) {
  if (section.ways.length < 2) return null;
  return (
    <Choices
      legend={legend}
      options={section.ways.map((way) => way.map((a) => a.name).join(", "))}
      titles={section.ways.map((way) => way.map(labelOf).join("; "))}
      chosen={section.chosen}
      choose={(i) => choose(section.ways[section.chosen]!, section.ways[i]!)}
    />
  );
}

interface ChoicesProps {
  legend: string;
  options: string[];
  titles?: string[];
  chosen: number;
  choose(i: number): void;
}

/** One of a few, all in sight. */
export function Choices({ legend, options, titles, chosen, choose }: ChoicesProps) {
  return (
    <div class="choices" role="radiogroup" aria-label={legend}>
      {options.map((option, i) => (
        <label key={option} title={titles?.[i]}>
          <input type="radio" name={legend + options.join()} checked={i === chosen} onChange={() => choose(i)} />
          <span>{option}</span>
        </label>
      ))}
    </div>
  );
}

function FindButton({ pressed, label, press }: { pressed: boolean; label: string; press(): void }) {
  return (
    <button
      type="button"
      class="find"
      aria-pressed={pressed}
      aria-label={`${pressed ? "found" : "solve for"}: ${label}`}
      onClick={press}
    >
      {pressed ? "found" : "solve for"}
    </button>
  );
}

interface FieldProps extends Props {
  argument: Argument;
  optional: boolean;
  /** Absent where no search can find it. */
  find: ((unknown: string) => void) | undefined;
}

function Field({ catalogue, design, refusal, record, change, argument: a, optional, find }: FieldProps) {
  const id = `field-${a.name}`;
  const isFound = design.unknown === a.name;
  const text = design.given[a.name] ?? "";
  const blank = text.trim() === "";
  const refused = refusal?.argument === a.name && !isFound;
  const wrong = refused && !blank;
  const label = labelOf(a);
  const details = [a.meaning === label ? "" : a.meaning, a.unit, a.kind === "choice" ? "" : a.rule]
    .filter(Boolean)
    .join("; ");
  const set = (value: string) => change(withValue(catalogue, design, a.name, value));
  const common = {
    id,
    name: a.name,
    "aria-describedby": `${id}-help${refused ? ` ${id}-error` : ""}`,
    "aria-invalid": wrong,
  };
  return (
    <div class={wrong ? "field wrong" : refused ? "field needed" : "field"}>
      <label class="name" for={id}>
        {label} <code>{a.name}</code>
      </label>
      {isFound ? (
        <output class="found" id={id} name={a.name}>
          {record?.unknown === a.name ? shown(record.answer[a.name]) : "\u2026"}
        </output>
      ) : a.choices ? (
        <select {...common} value={text} onChange={(event) => set(event.currentTarget.value)}>
          {a.default === undefined && <option value="">choose</option>}
          {a.choices.map((word) => <option key={word}>{word}</option>)}
        </select>
      ) : (
        <input
          {...common}
          type="text"
          spellcheck={false}
          value={text}
          placeholder={a.default !== undefined ? String(a.default) : optional ? "may be left out" : a.kind === "list" ? "10, 12, 14" : ""}
          onInput={(event) => set(event.currentTarget.value)}
        />
      )}
      {find && <FindButton pressed={isFound} label={label} press={() => isFound || find(a.name)} />}
      <p class="help" id={`${id}-help`}>{details}</p>
      {refused && (
        <p class="error" id={`${id}-error`}>{refusal.reason}</p>
      )}
    </div>
  );
}
