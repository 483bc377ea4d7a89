// The curve or surface of a design with its controls.
import { useRef } from "preact/hooks";
import type { Drawn } from "./ask";
import { type Answered, type Table, labelOf, shown } from "./catalogue";
import { ContourChart, LineChart, type Line, type Point } from "./chart";
import { type Axis, type CurveChoice, axesOf, secondAxes, usualLines } from "./curve";
import type { Form } from "./design";
import { Choices } from "./form";

interface Props {
  form: Form;
  record: Answered;
  choice: CurveChoice;
  choose(to: CurveChoice): void;
  drawn: Drawn;
  drag(to: Point): void;
  saveTable(table: Table): void;
  savePicture(chart: SVGSVGElement, how: "svg" | "png"): void;
}

const title = (axis: Axis) => `${labelOf(axis.argument)} (${axis.argument.name})`;

export function CurveView({ form, record, choice, choose, drawn, drag, saveTable, savePicture }: Props) {
  const box = useRef<HTMLElement>(null);
  const { table, curve, progress } = drawn;
  if (!table || !curve) return null;
  const axes = axesOf(form, record);
  const xAxes = axes.filter((axis) => axis.argument.kind !== "choice");
  const x = xAxes.find((axis) => axis.argument.name === curve.x.argument.name) ?? curve.x;
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

  return (
    <section class="panel curve" aria-label="Curve" ref={box}>
      <h2>{curve.contour ? "Surface" : "Curve"}</h2>
      <div class="controls">
        <label>
          Over
          <select value={x.argument.name} onChange={(e) => choose({ x: e.currentTarget.value })} name="curve-x">
            {xAxes.map((axis) => <option key={axis.argument.name} value={axis.argument.name}>{title(axis)}</option>)}
          </select>
        </label>
        <label>
          from
          <input class="short" type="text" inputMode="decimal" name="curve-from" value={choice.from ?? ""} placeholder={shown(curve.xs[0])} onChange={(e) => set({ from: e.currentTarget.value })} />
        </label>
        <label>
          to
          <input class="short" type="text" inputMode="decimal" name="curve-to" value={choice.to ?? ""} placeholder={shown(curve.xs.at(-1))} onChange={(e) => set({ to: e.currentTarget.value })} />
        </label>
        <label>
          for several
          <select value={curve.lines?.argument.name ?? ""} onChange={(e) => set({ lines: e.currentTarget.value, values: "" })} name="curve-lines">
            <option value="">one line only</option>
            {secondAxes(axes, x).map((axis) => <option key={axis.argument.name} value={axis.argument.name}>{title(axis)}</option>)}
          </select>
        </label>
        {curve.lines && !curve.contour && (
          <label>
            values
            <input type="text" name="curve-values" value={choice.values || usualLines(curve.lines, record, form)} onChange={(e) => set({ values: e.currentTarget.value })} />
          </label>
        )}
        {curve.lines && curve.lines.argument.kind !== "choice" && (
          <Choices legend="Shown as" options={["lines", "contours"]} chosen={curve.contour ? 1 : 0} choose={(i) => set({ view: i === 1 ? "contour" : "" })} />
        )}
      </div>
      {curve.contour ? (
        <ContourChart
          {...common}
          yLabel={curve.lines!.argument.name}
          zLabel={label.y}
          xs={table.columns[curve.x.argument.name]!.slice(0, curve.xs.length) as number[]}
          ys={curve.values.slice(0, Math.floor(table.columns[curve.x.argument.name]!.length / curve.xs.length)) as number[]}
          zs={table.columns[curve.target.name] as (number | null)[]}
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

function linesOf(table: Table, curve: NonNullable<Drawn["curve"]>): Line[] {
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
