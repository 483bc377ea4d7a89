// What the planner says: the answer, the sentence for a protocol, notes, sources; tables; two designs side by side.
import type { ComponentChildren } from "preact";
import { useEffect, useState } from "preact/hooks";
import { type Answered, type Argument, type Refusal, type Table, type Value, type Values, labelOf, shown } from "./catalogue";
import { csvOf } from "./curve";

type Known = Map<string, Argument>;

/** What is a target in the form is reached in the answer: "Power to reach" is "Power". */
const label = (known: Known, name: string) => {
  const a = known.get(name);
  return a ? labelOf(a).replace(/ to reach$/, "") : name[0]!.toUpperCase() + name.slice(1);
};

/** A number with all its digits behind it. */
function Exactly({ value }: { value: Value }) {
  return typeof value === "number" ? <data value={String(value)}>{shown(value)}</data> : <>{shown(value)}</>;
}

function Items({ values, known, kind }: { values: Values | undefined; known: Known; kind: string }) {
  if (!values || Object.keys(values).length === 0) return null;
  return (
    <dl class={kind}>
      {Object.entries(values).map(([name, value]) => (
        <div key={name} data-answer={name}>
          <dt>
            {label(known, name)} <code>{name}</code>
          </dt>
          <dd><Exactly value={value} /></dd>
        </div>
      ))}
    </dl>
  );
}

function Part({ title, children }: { title: string; children: ComponentChildren }) {
  return (
    <div class="part">
      <h3>{title}</h3>
      {children}
    </div>
  );
}

export function CopyButton({ text, label: what }: { text: string; label: string }) {
  const [done, setDone] = useState(false);
  useEffect(() => setDone(false), [text]);
  return (
    <button type="button" onClick={() => copy(text).then(() => setDone(true))}>
      {done ? "Copied" : what}
    </button>
  );
}

/** Pages from a disk may not be allowed the clipboard: then as a selection is copied. */
async function copy(text: string): Promise<void> {
  try {
    await navigator.clipboard.writeText(text);
  } catch {
    const area = document.createElement("textarea");
    area.value = text;
    document.body.append(area);
    area.select();
    document.execCommand("copy");
    area.remove();
  }
}

export function save(name: string, content: Blob | string, type: string): void {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(new Blob([content], { type }));
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10_000);
}

const same = (a: Values | undefined, b: Values | undefined) => JSON.stringify(a) === JSON.stringify(b);

/** The values that were found, without the other rule's where it says the same. */
const sizesOnly = (values: Values) => Object.fromEntries(Object.entries(values).filter(([, v]) => v !== null));

export function RecordView({ record, known }: { record: Answered; known: Known }) {
  const guaranteed = record.guaranteed && sizesOnly(record.guaranteed);
  const differs =
    guaranteed && !Object.entries(guaranteed).every(([name, value]) => same({ [name]: value }, { [name]: record.answer[name] ?? null }));
  return (
    <>
      <Items values={record.answer} known={known} kind="headline" />
      {record.report && (
        <div class="report">
          <p data-report>{record.report}</p>
          <CopyButton text={record.report} label="Copy sentence" />
        </div>
      )}
      {differs && (
        <Part title="From which every larger size does">
          <Items values={guaranteed} known={known} kind="values" />
        </Part>
      )}
      {record.enrolled && (
        <Part title="To enrol">
          <Items values={record.enrolled} known={known} kind="values" />
        </Part>
      )}
      {record.other && (
        <Part title="Also, on the other side of no effect">
          <Items values={record.other} known={known} kind="values" />
        </Part>
      )}
      {record.notes.length > 0 && (
        <Part title="Notes">
          <ul>{record.notes.map((note) => <li key={note}>{note}</li>)}</ul>
        </Part>
      )}
      <details class="part">
        <summary>Effects, method and sources</summary>
        <Items values={record.effects} known={known} kind="values" />
        {record.method && <p>Computed by the {record.method}.</p>}
        <ul>{record.sources.map((source) => <li key={source}>{source}</li>)}</ul>
        <p class="quiet">statpower {record.statpower}</p>
      </details>
    </>
  );
}

const ROWS = 200;

export function TableView({ table, known, name }: { table: Table; known: Known; name: string }) {
  const names = Object.keys(table.columns);
  const rows = table.columns[names[0]!]?.length ?? 0;
  return (
    <>
      <div class="scroll" tabIndex={0} role="region" aria-label="Table of answers">
        <table>
          <thead>
            <tr>
              {names.map((each) => <th key={each} scope="col" title={label(known, each)}>{each}</th>)}
              {table.refusals && <th scope="col">why not</th>}
            </tr>
          </thead>
          <tbody>
            {Array.from({ length: Math.min(rows, ROWS) }, (_, row) => (
              <tr key={row}>
                {names.map((each) => <td key={each}>{shown(table.columns[each]![row])}</td>)}
                {table.refusals && <td>{table.refusals[row]}</td>}
              </tr>
            ))}
          </tbody>
        </table>
      </div>
      <p class="tools">
        <button type="button" onClick={() => save(`${name}.csv`, csvOf(table), "text/csv")}>
          Save table (CSV)
        </button>
        {rows > ROWS && <span class="quiet">{`The first ${ROWS} of ${rows} rows; the file has them all.`}</span>}
      </p>
    </>
  );
}

/** Something that needs doing is no error: the form is not filled in yet. */
export function RefusalView({ refusal, known, blank }: { refusal: Refusal; known: Known; blank: boolean }) {
  const argument = refusal.argument ? label(known, refusal.argument) : "";
  return (
    <p class={blank ? "hint" : "refusal"} data-refusal={refusal.argument ?? ""}>
      {argument && <strong>{argument}</strong>} {refusal.reason}
    </p>
  );
}

export function SideBySide({ left, right, known, drop }: { left: Answered; right: Answered; known: Known; drop(): void }) {
  const parts: [string, (r: Answered) => Values | undefined][] = [
    ["Asked", (r) => r.asked],
    ["Answer", (r) => r.answer],
    ["Effects", (r) => r.effects],
  ];
  return (
    <section class="panel beside" aria-label="Two designs side by side">
      <h2>Side by side</h2>
      <div class="wide" tabIndex={0} role="region" aria-label="Comparison">
        <table>
          <thead>
            <tr><th scope="col"><span class="hidden">Quantity</span></th><th scope="col">{left.title}, kept</th><th scope="col">{right.title}, now</th></tr>
          </thead>
          {parts.map(([title, of]) => {
            const [a, b] = [of(left) ?? {}, of(right) ?? {}];
            const names = [...new Set([...Object.keys(a), ...Object.keys(b)])];
            if (names.length === 0) return null;
            return (
              <tbody key={title}>
                <tr><th scope="rowgroup" class="heading" colSpan={3}>{title}</th></tr>
                {names.map((name) => {
                  const differs = shown(a[name]) !== shown(b[name]);
                  return (
                    <tr key={name} class={differs ? "differs" : ""}>
                      <th scope="row">{label(known, name)} <code>{name}</code></th>
                      <td>{shown(a[name])}</td>
                      <td>{shown(b[name])}</td>
                    </tr>
                  );
                })}
              </tbody>
            );
          })}
        </table>
      </div>
      <p class="tools"><button type="button" onClick={drop}>Stop comparing</button></p>
    </section>
  );
}
