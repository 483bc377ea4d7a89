// What the planner says about itself: the JSON of statplan_catalogue(), statplan_ask()'s answers, and what
// follows from them for forms. No test and no argument is named here.

export interface Argument {
  name: string;
  meaning: string;
  kind: "number" | "whole" | "choice" | "list";
  rule: string;
  unit?: string;
  low?: Limit;
  high?: Limit;
  default?: number | string;
  choices?: string[];
  null?: number | string;
  only?: { argument: string; choices: string[] }[];
}

export interface Limit {
  value: number;
  open: boolean;
}

export interface Measure {
  target: Argument;
  ways: Argument[][];
  options: Argument[];
}

export interface Test {
  name: string;
  title: string;
  family: string;
  study: string;
  sizes: { ways: Argument[][]; found: Argument[]; shares: Argument[]; note: string };
  power: Measure;
  precision?: Measure;
  effects: Argument[];
  sources: string[];
  examples: { study: string; command: string; answer: string; value: number; tolerance: number; source: string }[];
}

export interface Catalogue {
  version: string;
  search: Argument[];
  tests: Test[];
}

export type Value = number | string | null | number[];
export type Values = Record<string, Value>;

export interface Answered {
  statpower: string;
  test: string;
  title: string;
  question: string;
  asked: Values;
  unknown: string;
  answer: Values;
  guaranteed?: Values;
  enrolled?: Values;
  other?: Values;
  effects?: Values;
  method?: string;
  notes: string[];
  sources: string[];
  report?: string;
}

export interface Table {
  test: string;
  title: string;
  question: string;
  asked: Values;
  over: string[];
  columns: Record<string, (number | string | null)[]>;
  refusals?: (string | null)[];
}

export interface Refusal {
  kind: "refused" | "no-answer" | "cancelled";
  argument?: string;
  reason: string;
  message: string;
}

export type Answer = Answered | Table | { refusal: Refusal };

export const isRefusal = (a: Answer): a is { refusal: Refusal } => "refusal" in a;
export const isTable = (a: Answer): a is Table => "columns" in a;

/** The ways that say most: one whose arguments all belong to another is that other with some left out. */
export function fullestWays(ways: Argument[][]): Argument[][] {
  const within = (small: Argument[], large: Argument[]) =>
    small.length < large.length && small.every((a) => large.some((b) => b.name === a.name));
  return ways.filter((way) => !ways.some((other) => within(way, other)));
}

/** The arguments that a way can do without. */
export function mayBeLeftOut(way: Argument[], ways: Argument[][]): Set<string> {
  const least = ways
    .filter((other) => other.every((a) => way.some((b) => b.name === a.name)))
    .reduce((best, other) => (other.length < best.length ? other : best), way);
  return new Set(way.filter((a) => !least.some((b) => b.name === a.name)).map((a) => a.name));
}

/** Every argument of a test, by its name; a measure's own come first. */
export function argumentsOf(test: Test, measure: Measure, search: Argument[]): Map<string, Argument> {
  const all = new Map<string, Argument>();
  const add = (a: Argument) => all.has(a.name) || all.set(a.name, a);
  measure.ways.flat().forEach(add);
  test.sizes.ways.flat().forEach(add);
  test.sizes.found.forEach(add);
  test.sizes.shares.forEach(add);
  measure.options.forEach(add);
  add(measure.target);
  search.forEach(add);
  test.effects.forEach(add);
  return all;
}

/** How many groups a study has, in words, from the sizes that a search finds. */
export function groupsOf(test: Test): string {
  const [first, second] = test.sizes.found;
  if (first!.kind === "list") return "Several groups";
  if (second) return "Two groups";
  const unit = first!.unit ?? "observations";
  return unit === "observations" ? "One group" : unit[0]!.toUpperCase() + unit.slice(1);
}

/** An argument's meaning, cut where its explanation begins: "Cohen's d: difference ..." is labelled "Cohen's d". */
export function labelOf(a: Argument): string {
  let depth = 0;
  for (let i = 0; i < a.meaning.length; ++i) {
    const c = a.meaning[i]!;
    if (c === "(") ++depth;
    if (c === ")") --depth;
    if (depth === 0 && (c === ":" || c === ";")) return a.meaning.slice(0, i);
  }
  return a.meaning;
}

/** A number as people read it: six significant digits; whole numbers in full. */
export function shown(value: Value | undefined): string {
  if (value === null || value === undefined) return "";
  if (Array.isArray(value)) return value.map((x) => shown(x)).join(", ");
  if (typeof value === "string" || Number.isInteger(value)) return String(value);
  return String(Number(value.toPrecision(6)));
}
