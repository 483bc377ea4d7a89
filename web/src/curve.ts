// Curves and surfaces around an answered design: how its power (or half-width) varies with one of its numbers,
// for several values of another.
import type { Answered, Argument, Table, Value } from "./catalogue";
import type { Form } from "./design";
import { SIZE } from "./design";

/** What somebody chose to see; what is absent is chosen by itself. All are texts of the fragment. */
export interface CurveChoice {
  x?: string;
  from?: string;
  to?: string;
  lines?: string;
  values?: string | undefined;
  view?: string;
}

export interface Axis {
  argument: Argument;
  /** Where the design stands. */
  at: Value;
  /** One of the ways of giving sizes, where the sizes were found. */
  way?: Argument[];
}

export interface Curve {
  x: Axis;
  xs: number[];
  lines: Axis | undefined;
  /** Values of the second argument, one a line; one element where there is none. */
  values: (number | string)[];
  contour: boolean;
  target: Argument;
  /** Asks for some x of one line. */
  request(value: number | string, xs: number[]): object;
}

const POINTS = 200;
const SURFACE_POINTS = 40;

/** What was asked or found, by name. A group size stands for all of them where they are equal. */
function valueOf(record: Answered, form: Form, name: string): Value | undefined {
  const value = record.answer[name] ?? record.asked[name];
  if (value !== undefined || record.unknown !== SIZE) return value;
  const found = form.test.sizes.found.flatMap((a) => record.answer[a.name] ?? []);
  return found.every((size) => size === found[0]) ? found[0] : undefined;
}

/** The arguments that a curve can be drawn over. */
export function axesOf(form: Form, record: Answered): Axis[] {
  const axes: Axis[] = [];
  const add = (argument: Argument, way?: Argument[]) => {
    const at = valueOf(record, form, argument.name);
    if (argument.kind === "list" || at === undefined || at === null) return;
    if (!axes.some((axis) => axis.argument.name === argument.name))
      axes.push({ argument, at, ...(way && { way }) });
  };
  if (record.unknown === SIZE) {
    const { ways, shares } = form.test.sizes;
    const isShare = (a: Argument) => shares.some((s) => s.name === a.name);
    const even = shares.every((s) => {
      const value = record.asked[s.name];
      return value === undefined || value === s.default || (Array.isArray(value) && value.length === 0);
    });
    for (const way of ways) {
      const own = way.filter((a) => !isShare(a));
      if (own.length === 1 && (even || way.length > shares.length)) add(own[0]!, way);
    }
  } else {
    form.sizes.shown.forEach((a) => add(a));
  }
  form.effect.shown.forEach((a) => add(a));
  form.options.forEach((a) => add(a));
  return axes;
}

/** From the null hypothesis to twice as far as the design; sizes up to twice the design's. */
function rangeOf(axis: Axis, record: Answered, form: Form): [number, number] {
  const { argument } = axis;
  const at = Number(axis.at);
  const none =
    typeof argument.null === "string" ? valueOf(record, form, argument.null) : (argument.null ?? undefined);
  let low: number;
  let high: number;
  if (argument.kind === "whole") [low, high] = [argument.low?.value ?? 1, Math.max(10, 2 * at)];
  else if (typeof none === "number" && none !== at) [low, high] = [none, none + 2 * (at - none)];
  else if (at === 0) [low, high] = [-1, 1];
  else [low, high] = [at / 4, 2 * at];
  if (low > high) [low, high] = [high, low];
  return clipped(argument, low, high);
}

function clipped(argument: Argument, low: number, high: number): [number, number] {
  const { low: least, high: most } = argument;
  const inside = (high - low) / 1000;
  if (least && low <= least.value) low = least.value + (least.open ? inside : 0);
  if (most && high >= most.value) high = most.value - (most.open ? inside : 0);
  return [low, high];
}

export function evenly(low: number, high: number, count: number, whole: boolean): number[] {
  if (!(high > low)) return [low];
  if (whole) {
    const step = Math.max(1, Math.ceil((Math.floor(high) - Math.ceil(low)) / count));
    const values: number[] = [];
    for (let x = Math.ceil(low); x <= high; x += step) values.push(x);
    return values;
  }
  const step = (high - low) / (count - 1);
  // Twelve digits: 0.3, not 0.30000000000000004.
  return Array.from({ length: count }, (_, i) => Number((low + i * step).toPrecision(12)));
}

/** Three values around the design's, or the words of a choice. */
export function usualLines(axis: Axis, record: Answered, form: Form): string {
  const { argument } = axis;
  if (argument.choices) return argument.choices.join(", ");
  const at = Number(axis.at);
  if (argument.kind === "whole") return [at * 0.75, at, at * 1.25].map(Math.round).join(", ");
  const [low, high] = rangeOf(axis, record, form);
  return [0.8 * at, at, 1.2 * at]
    .filter((x) => x >= low && x <= high)
    .map((x) => String(Number(x.toPrecision(3))))
    .join(", ");
}

const number = (text: string | undefined): number | undefined => {
  const x = Number(text);
  return text !== undefined && text.trim() !== "" && Number.isFinite(x) ? x : undefined;
};

const MOST_LINES = 12;

const listed = (text: string) =>
  text.split(",").map((each) => each.trim()).filter(Boolean).slice(0, MOST_LINES);

export function curveOf(form: Form, record: Answered, choice: CurveChoice): Curve | null {
  const axes = axesOf(form, record);
  const numbers = axes.filter((axis) => axis.argument.kind !== "choice");
  const x = numbers.find((axis) => axis.argument.name === choice.x) ?? numbers[0];
  if (!x) return null;
  const lines = secondAxes(axes, x).find((axis) => axis.argument.name === choice.lines);
  const contour = choice.view === "contour" && lines !== undefined && lines.argument.kind !== "choice";
  const count = contour ? SURFACE_POINTS : POINTS;

  const [low, high] = rangeOf(x, record, form);
  const [from, to] = clipped(x.argument, number(choice.from) ?? low, number(choice.to) ?? high);
  const xs = evenly(from, to, count, x.argument.kind === "whole");

  let values: (number | string)[] = [""];
  if (lines && contour) {
    values = evenly(...rangeOf(lines, record, form), count, lines.argument.kind === "whole");
  } else if (lines) {
    values = listed(choice.values ?? "");
    if (values.length === 0) values = listed(usualLines(lines, record, form));
  }

  const request = (value: number | string, some: number[]): object => {
    const asked: Record<string, unknown> = { test: record.test, question: form.measure === form.test.power ? "power" : "precision" };
    const give = (name: string) => {
      const at = record.answer[name] ?? record.asked[name];
      if (at !== undefined && !(Array.isArray(at) && at.length === 0)) asked[name] = at;
    };
    const way = x.way ?? lines?.way;
    for (const a of way ?? (record.unknown === SIZE ? form.test.sizes.found : form.sizes.shown)) give(a.name);
    for (const a of [...form.effect.shown, ...form.options]) give(a.name);
    if (lines) asked[lines.argument.name] = value;
    asked[x.argument.name] = some;
    return asked;
  };
  return { x, xs, lines, values, contour, target: form.measure.target, request };
}

/** Arguments that can make several lines of a curve over another. */
export function secondAxes(axes: Axis[], x: Axis): Axis[] {
  return axes.filter((axis) => axis !== x && !(axis.way && x.way));
}

/** A part of a table behind another with the same columns. */
export function appended(table: Table | undefined, part: Table): Table {
  if (!table) return part;
  const columns: Table["columns"] = {};
  for (const name of Object.keys(part.columns))
    columns[name] = [...(table.columns[name] ?? []), ...part.columns[name]!];
  return { ...table, columns };
}

/** Comma-separated values with a header, numbers in full. */
export function csvOf(table: Table): string {
  const names = Object.keys(table.columns);
  const rows = table.columns[names[0]!]!.length;
  const cell = (value: number | string | null | undefined) => (value === null ? "" : String(value));
  const lines = [names.join(",")];
  for (let row = 0; row < rows; ++row) lines.push(names.map((name) => cell(table.columns[name]![row])).join(","));
  return lines.join("\r\n") + "\r\n";
}
