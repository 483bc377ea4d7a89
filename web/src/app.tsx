import { useEffect, useMemo, useRef, useState } from "preact/hooks";
import { CopyButton, RecordView, RefusalView, SideBySide, TableView, save } from "./answer";
import { useAnswer, useCurve } from "./ask";
import { type Answered, type Catalogue, argumentsOf, isRefusal, isTable, shown } from "./catalogue";
import { Chooser } from "./chooser";
import { pngOf, svgText } from "./chart";
import { CurveView, TableChart } from "./curve_view";
import { type CurveChoice, csvOf, curveOf } from "./curve";
import { type Design, formOf, fromFragment, newDesign, requestOf, toFragment, withValue } from "./design";
import { DesignForm } from "./form";
import type { Planner } from "./planner";

interface Props {
  catalogue: Catalogue;
  planners: { answers: Planner; curves: Planner; beside: Planner };
}

/** All that an address holds: the design, what its curve shows, a second design that is kept beside it. */
interface Place {
  design: Design | null;
  curve: CurveChoice;
  beside: string | null;
}

const CURVE = "curve.";
const BESIDE = "beside";

function placeOf(catalogue: Catalogue, hash: string): Place {
  const fragment = hash.replace(/^#/, "");
  const words = new URLSearchParams(fragment.split(/\?(.*)/s)[1]);
  const curve: Record<string, string> = {};
  for (const [word, text] of words) if (word.startsWith(CURVE)) curve[word.slice(CURVE.length)] = text;
  return { design: fromFragment(catalogue, fragment), curve, beside: words.get(BESIDE) };
}

function hashOf(catalogue: Catalogue, { design, curve, beside }: Place): string {
  if (!design) return "";
  const words = new URLSearchParams();
  for (const [word, text] of Object.entries(curve)) if (text) words.set(CURVE + word, text as string);
  if (beside) words.set(BESIDE, beside);
  const more = words.toString();
  return "#" + toFragment(catalogue, design) + (more && "&" + more);
}

export function App({ catalogue, planners }: Props) {
  const [place, setPlace] = useState(() => placeOf(catalogue, location.hash));
  const { design, curve: choice, beside } = place;
  const [choosing, setChoosing] = useState(design === null);

  const form = design && formOf(catalogue, design);

  useEffect(() => {
    const follow = () => {
      const there = placeOf(catalogue, location.hash);
      setPlace(there);
      setChoosing(there.design === null);
    };
    addEventListener("hashchange", follow);
    return () => removeEventListener("hashchange", follow);
  }, []);
  // Whoever has chosen a test goes on at its form, also by keyboard.
  const heading = useRef<HTMLHeadingElement>(null);
  const began = useRef(false);
  useEffect(() => {
    document.title = `statpower: ${form && !choosing ? form.test.title : "plan a study"}`;
    if (!choosing && began.current) heading.current?.focus({ preventScroll: true });
    began.current = true;
  }, [choosing, design?.test]);
  /** A new test is a new page of the browser's history; typing is not. */
  const go = (to: Place, step = false) => {
    const hash = hashOf(catalogue, to);
    if (hash !== location.hash) history[step ? "pushState" : "replaceState"](null, "", hash || "#");
    setPlace(to);
  };

  const request = useMemo(() => design && requestOf(catalogue, design), [design]);
  const asked = useAnswer(planners.answers, request);
  const known = form ? argumentsOf(form.test, form.measure, catalogue.search) : new Map();
  const answer = asked.answer;
  const refusal = answer && isRefusal(answer) ? answer.refusal : undefined;
  const table = answer && isTable(answer) ? answer : undefined;
  const ofThisTest = answer && !isRefusal(answer) && answer.test === design?.test;
  const record = ofThisTest && !table ? (answer as Answered) : undefined;
  const answersThis = asked.of === JSON.stringify(request);

  const curve = useMemo(
    () => (form && record && answersThis ? curveOf(form, record, choice) : null),
    [record, choice, answersThis],
  );
  const lastCurve = useRef(curve);
  if (curve || !record) lastCurve.current = curve;
  const drawn = useCurve(planners.curves, lastCurve.current);

  const besideDesign = beside === null ? null : fromFragment(catalogue, beside);
  const kept = useAnswer(planners.beside, besideDesign && requestOf(catalogue, besideDesign)).answer;
  const keptRecord = kept && !isRefusal(kept) && !isTable(kept) ? kept : undefined;

  const designs = useHistory(record && design && answersThis ? { hash: hashOf(catalogue, place), record } : undefined);
  const blank = !!refusal?.argument && !(design?.given[refusal.argument] ?? "").trim();

  return (
    <>
      <header class="top">
        <h1>statpower</h1>
        <p class="quiet">Everything is computed on this device. Nothing leaves it.</p>
        {form && (
          <button type="button" class="change" onClick={() => setChoosing(!choosing)}>
            {choosing ? "Back to the design" : "Choose another test"}
          </button>
        )}
      </header>
      {(choosing || !design) && (
        <Chooser
          catalogue={catalogue}
          chosen={design?.test}
          choose={(test) => {
            setChoosing(false);
            go({ design: newDesign(catalogue, test.name), curve: {}, beside }, true);
          }}
        />
      )}
      {design && form && !choosing && (
        <main class="planning">
          <section class="panel study" aria-label="The design">
            <h2 tabIndex={-1} ref={heading}>{form.test.title}</h2>
            <p class="quiet">{form.test.study}</p>
            <DesignForm
              catalogue={catalogue}
              design={design}
              form={form}
              refusal={refusal && asked.of ? refusal : undefined}
              record={record}
              change={(to) => go({ ...place, design: to })}
            />
          </section>
          <div class="results">
            <section class={asked.busy ? "panel answer busy" : "panel answer"} aria-label="The answer" id="answer">
              <h2>Answer</h2>
              {asked.busy && <Working stop={asked.stop} />}
              {asked.stopped && (
                <p class="hint">
                  Stopped. <button type="button" onClick={asked.again}>Compute it again</button>
                </p>
              )}
              {!asked.stopped && refusal && <RefusalView refusal={refusal} known={known} blank={blank} />}
              {!asked.stopped && record && <RecordView record={record} known={known} />}
              {!asked.stopped && table && (
                <>
                  <TableChart table={table} known={known} />
                  <TableView table={table} known={known} name={table.test} />
                </>
              )}
              {record && (
                <p class="tools">
                  <CopyButton text={location.href} label="Copy link" />
                  <button type="button" onClick={() => go({ ...place, beside: toFragment(catalogue, design) })}>
                    Keep to compare
                  </button>
                  <button type="button" onClick={() => print()}>Print</button>
                </p>
              )}
            </section>
            {keptRecord && record && (
              <SideBySide left={keptRecord} right={record} known={known} drop={() => go({ ...place, beside: null })} />
            )}
            {record && lastCurve.current && drawn.curve && drawn.table && drawn.curve.target === form.measure.target && (
              <CurveView
                form={form}
                record={record}
                choice={choice}
                choose={(to) => go({ ...place, curve: to })}
                chosen={lastCurve.current}
                drawn={drawn}
                drag={(to) => {
                  const x = drawn.curve!.x.argument;
                  const target = form.measure.target;
                  const [name, text] =
                    x.name in design.given
                      ? [x.name, String(Number(to.x.toPrecision(3)))]
                      : [target.name, justReached(to.y, design.plan === "power")];
                  go({ ...place, design: withValue(catalogue, design, name, text) });
                }}
                saveTable={(of) => save(`${design.test}-curve.csv`, csvOf(of), "text/csv")}
                savePicture={async (chart, how) =>
                  how === "svg"
                    ? save(`${design.test}.svg`, svgText(chart), "image/svg+xml")
                    : save(`${design.test}.png`, await pngOf(chart), "image/png")
                }
              />
            )}
          </div>
        </main>
      )}
      {record && !choosing && <Strip record={record} />}
      <Announcer text={record?.report ?? (asked.busy ? "" : (refusal?.message ?? ""))} />
      <History entries={designs} />
    </>
  );
}

/** The target that is just reached: a size with this power must not fall short of it by rounding. */
function justReached(y: number, least: boolean): string {
  const rounded = least ? Math.floor(y * 1e4) / 1e4 : Math.ceil(y * 1e4) / 1e4;
  return String(rounded);
}

/** On a narrow page, where the answer stands below the form: its numbers, always in sight. */
function Strip({ record }: { record: Answered }) {
  const words = Object.entries(record.answer).map(([name, value]) => `${name} ${shown(value)}`);
  return (
    <button type="button" class="strip" onClick={() => document.getElementById("answer")!.scrollIntoView({ behavior: "smooth" })}>
      <span class="hidden">Go to the answer: </span>
      {words.join(", ")}
    </button>
  );
}

/** Shown once a search takes long enough to be noticed. */
function Working({ stop }: { stop(): void }) {
  const [seconds, setSeconds] = useState(0);
  useEffect(() => {
    const begun = performance.now();
    const timer = setInterval(() => setSeconds((performance.now() - begun) / 1000), 200);
    return () => clearInterval(timer);
  }, []);
  if (seconds < 0.15) return null;
  return (
    <p class="working">
      <progress aria-label="Searching" /> {`Searching, ${seconds.toFixed(0)} s`}
      <button type="button" onClick={stop}>Stop</button>
    </p>
  );
}

/** For screen readers: the answer once typing has paused. */
function Announcer({ text }: { text: string }) {
  const [said, setSaid] = useState("");
  useEffect(() => {
    const timer = setTimeout(() => setSaid(text), 700);
    return () => clearTimeout(timer);
  }, [text]);
  return <p class="hidden" role="status" aria-live="polite">{said}</p>;
}

interface Entry {
  hash: string;
  report: string;
  title: string;
}

/** The last designs that stayed on the page for a moment, newest first. */
function useHistory(now: { hash: string; record: Answered } | undefined): Entry[] {
  const [entries, setEntries] = useState<Entry[]>([]);
  const report = now?.record.report;
  useEffect(() => {
    if (!now || !report) return;
    const timer = setTimeout(
      () =>
        setEntries((last) =>
          [{ hash: now.hash, report, title: now.record.title }, ...last.filter((entry) => entry.report !== report)].slice(0, 20),
        ),
      1500,
    );
    return () => clearTimeout(timer);
  }, [now?.hash, report]);
  return entries;
}

function History({ entries }: { entries: Entry[] }) {
  if (entries.length < 2) return null;
  return (
    <nav class="panel history" aria-label="Designs of this session">
      <h2>Designs of this session</h2>
      <ol>
        {entries.map((entry) => (
          <li key={entry.hash}><a href={entry.hash}>{entry.title}</a> <span class="quiet">{entry.report}</span></li>
        ))}
      </ol>
    </nav>
  );
}
