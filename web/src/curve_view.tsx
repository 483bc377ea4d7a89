// The curve or surface of a design with its controls.
import { useRef } from "preact/hooks";
import type { Drawn } from "./ask";
import { type Answered, type Argument, type Table, labelOf, shown } from "./catalogue";
import { ContourChart, LineChart, type Line, type Point } from "./chart";
import { type Axis, type Curve, type CurveChoice, axesOf, secondAxes, usualLines } from "./curve";
import type { Form } from "./design";
import { Choices } from "./form";

interface Props {
  form: Form;
  record: Answered;
  choice: CurveChoice;
  choose(to: CurveChoice): void;
  /** What is chosen; `drawn` follows once it is computed. */
  chosen: Curve;
  drawn: Drawn;
  drag(to: Point): void;
  saveTable(table: Table): void;
  savePicture(chart: SVGSVGElement, how: "svg" | "png"): void;
}

const title = (axis: Axis) => `${labelOf(axis.argument)} (${axis.argument.name})`;

export function CurveView({ form, record, choice, choose, chosen, drawn, drag, saveTable, savePicture }: Props) {
  const box = useRef<HTMLElement>(null);
  const { table, curve, progress } = drawn;
  if (!table || !curve) return null;
  const axes = axesOf(form, record);
  const xAxes = axes.filter((axis) => axis.argument.kind !== "choice");
  const axisOf = (of: Curve) => xAxes.find((axis) => axis.argument.name === of.x.argument.name) ?? of.x;
  const x = axisOf(curve);
  const chosenX = axisOf(chosen);
  const targetValue = record.asked[curve.target.name];
  const target = typeof targetValue === "number" ? targetValue : undefined;
  const reached = record.answer[curve.target.name];
  const label = { x: `${labelOf(x.argument)} (${x.argument.name})`, y: labelOf(curve.target).replace(/ to reach$/, "") };
  const set = (change: CurveChoice) => choose({ ...choice, ...change });
  const picture = () => box.current!.querySelector<SVGSVGElement>(".chart > svg")!;
  const probability = curve.target.unit === "probability";
  const common = { xLabel: label.x, probability };
  const at: Point | undefined =
    typeof x.at === "number" && typeof reached === "number" ? { x: x.at, y: reached } : undefined;

  // Of a surface that is still being computed, its whole rows; the first two make an area.
  const rows = Math.floor(table.columns[curve.x.argument.name]!.length / curve.xs.length);

  return (
    <section class="panel curve" aria-label="Curve" ref={box}>
      <h2>{chosen.contour ? "Surface" : "Curve"}</h2>
      <div class="controls">
        <label>
          Over
          <select value={chosen.x.argument.name} onChange={(e) => choose({ x: e.currentTarget.value })} name="curve-x">
            {xAxes.map((axis) => <option key={axis.argument.name} value={axis.argument.name}>{title(axis)}</option>)}
          </select>
        </label>
        <label>
          from
          <input class="short" type="text" inputMode="decimal" name="curve-from" value={choice.from ?? ""} placeholder={shown(chosen.xs[0])} onInput={(e) => set({ from: e.currentTarget.value })} />
        </label>
        <label>
          to
          <input class="short" type="text" inputMode="decimal" name="curve-to" value={choice.to ?? ""} placeholder={shown(chosen.xs.at(-1))} onInput={(e) => set({ to: e.currentTarget.value })} />
        </label>
        <label>
          for several
          <select value={chosen.lines?.argument.name ?? ""} onChange={(e) => set({ lines: e.currentTarget.value, values: undefined })} name="curve-lines">
            <option value="">one line only</option>
            {secondAxes(axes, chosenX).map((axis) => <option key={axis.argument.name} value={axis.argument.name}>{title(axis)}</option>)}
          </select>
        </label>
        {chosen.lines && !chosen.contour && (
          <label>
            values
            <input type="text" name="curve-values" value={choice.values ?? usualLines(chosen.lines, record, form)} onInput={(e) => set({ values: e.currentTarget.value })} />
          </label>
        )}
        {chosen.lines && chosen.lines.argument.kind !== "choice" && (
          <Choices legend="Shown as" options={["lines", "contours"]} chosen={chosen.contour ? 1 : 0} choose={(i) => set({ view: i === 1 ? "contour" : "" })} />
        )}
      </div>
      {curve.contour && rows < 2 ? null : curve.contour ? (
        <ContourChart
          {...common}
          yLabel={curve.lines!.argument.name}
          zLabel={label.y}
          xs={table.columns[curve.x.argument.name]!.slice(0, curve.xs.length) as number[]}
          ys={curve.values.slice(0, rows) as number[]}
          zs={table.columns[curve.target.name]!.slice(0, rows * curve.xs.length) as (number | null)[]}
          target={target}
          point={typeof curve.x.at === "number" && typeof curve.lines!.at === "number" ? { x: curve.x.at, y: curve.lines!.at } : undefined}
          description={`${label.y} over ${label.x} and ${title(curve.lines!)}`}
        />
      ) : (
        <LineChart
          {...common}
          yLabel={label.y}
          lines={linesOf(table, curve)}
          {...(target !== undefined && { target })}
          {...(at && (!curve.lines || curve.values.some((v) => Number(v) === curve.lines!.at || v === curve.lines!.at)) && { point: at })}
          {...(!curve.lines && { onDrag: drag })}
          description={`${label.y} over ${label.x}${at ? `; at ${shown(at.x)} it is ${shown(at.y)}` : ""}`}
        />
      )}
      {progress < 1 && (
        <p class="working">
          <progress value={progress} aria-label="Computing the curve" />
          <button type="button" onClick={drawn.stop}>Stop</button>
        </p>
      )}
      <p class="tools">
        <button type="button" onClick={() => saveTable(table)}>Save table (CSV)</button>
        <button type="button" onClick={() => savePicture(picture(), "svg")}>Save picture (SVG)</button>
        <button type="button" onClick={() => savePicture(picture(), "png")}>Save picture (PNG)</button>
      </p>
    </section>
  );
}

const MOST_POINTS = 10_000;

/** The chart of a table that somebody asked for by several values in the form: its first answer over what varies. */
export function TableChart({ table, known }: { table: Table; known: Map<string, Argument> }) {
  const x = table.over.at(-1)!;
  const y = Object.keys(table.columns)[table.over.length]!;
  const xs = table.columns[x]!;
  if (table.over.length > 2 || xs.length > MOST_POINTS || xs.some((value) => typeof value !== "number")) return null;
  const many = xs.length / (table.over.length === 2 ? new Set(table.columns[table.over[0]!]).size : 1);
  const lines: Line[] = [];
  for (let i = 0; i < xs.length; i += many)
    lines.push({
      name: table.over.length === 2 ? `${table.over[0]} = ${shown(table.columns[table.over[0]!]![i])}` : "",
      xs: xs.slice(i, i + many) as number[],
      ys: table.columns[y]!.slice(i, i + many) as (number | null)[],
    });
  const name = (each: string) => (known.has(each) ? `${labelOf(known.get(each)!)} (${each})` : each);
  const probability = known.get(y)?.unit === "probability";
  return (
    <LineChart lines={lines} xLabel={name(x)} yLabel={name(y)} probability={probability} description={`${name(y)} over ${name(x)}`} />
  );
}

function linesOf(table: Table, curve: Curve): Line[] {
  const xs = table.columns[curve.x.argument.name] as number[];
  const ys = table.columns[curve.target.name] as (number | null)[];
  const many = curve.xs.length;
  return curve.values
    .map((value, i) => ({
      name: curve.lines ? `${curve.lines.argument.name} = ${value}` : "",
      xs: xs.slice(i * many, (i + 1) * many),
      ys: ys.slice(i * many, (i + 1) * many),
    }))
    .filter((line) => line.xs.length > 0);
}
