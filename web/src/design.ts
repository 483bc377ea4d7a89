// A design that somebody is filling in: texts by the names of arguments, as typed, and what is to be found.
// It travels in the fragment of the address.
import { Argument, Catalogue, Measure, Test, fullestWays, mayBeLeftOut } from "./catalogue";

export interface Design {
  test: string;
  plan: "power" | "precision";
  /** "size", or the name of the target or of an argument. */
  unknown: string;
  /** Texts by the names of arguments; those of the chosen ways are always there, if empty. */
  given: Record<string, string>;
}

export interface Section {
  ways: Argument[][];
  /** Position of the chosen way. */
  chosen: number;
  shown: Argument[];
  optional: Set<string>;
}

/** The arguments of a design, as a form shows them. */
export interface Form {
  test: Test;
  measure: Measure;
  effect: Section;
  sizes: Section;
  /** The allocation, where sizes are sought. */
  shares: Argument[];
  options: Argument[];
  search: Argument[];
}

export const SIZE = "size";

const names = (way: Argument[]) => way.map((a) => a.name);

/** The way that a design is in: the one of which it has most names. */
function chosenWay(ways: Argument[][], design: Design): number {
  let best = 0;
  let most = -1;
  ways.forEach((way, i) => {
    const has = way.filter((a) => a.name in design.given || a.name === design.unknown).length;
    const score = has / way.length;
    if (score > most) {
      most = score;
      best = i;
    }
  });
  return best;
}

function section(ways: Argument[][], design: Design): Section {
  const fullest = fullestWays(ways);
  const chosen = chosenWay(fullest, design);
  const shown = fullest[chosen] ?? [];
  return { ways: fullest, chosen, shown, optional: mayBeLeftOut(shown, ways) };
}

export function formOf(catalogue: Catalogue, design: Design): Form {
  const test = catalogue.tests.find((t) => t.name === design.test)!;
  const measure = (design.plan === "precision" && test.precision) || test.power;
  const valueOf = (a: Argument) => design.given[a.name] || String(a.default ?? "");
  const matters = (a: Argument) =>
    (a.only ?? []).every((only) => {
      const choice = measure.options.find((o) => o.name === only.argument);
      return !choice || only.choices.includes(valueOf(choice));
    });
  const effect = section(measure.ways, design);
  const sought = design.unknown === SIZE;
  const sizes = sought
    ? { ways: [], chosen: 0, shown: [], optional: new Set<string>() }
    : section(test.sizes.ways, design);
  return {
    test,
    measure,
    effect: { ...effect, shown: effect.shown.filter(matters) },
    sizes,
    shares: sought ? test.sizes.shares : [],
    options: measure.options.filter(matters),
    search: catalogue.search.filter((a) => sought || (a.kind === "whole" && design.unknown !== measure.target.name)),
  };
}

export const allShown = (form: Form): Argument[] => [
  ...form.effect.shown,
  ...form.sizes.shown,
  ...form.shares,
  form.measure.target,
  ...form.options,
  ...form.search,
];

/** A design with exactly the arguments that its form shows, the others forgotten. */
function tidied(catalogue: Catalogue, design: Design): Design {
  const form = formOf(catalogue, design);
  const given: Record<string, string> = {};
  for (const a of allShown(form))
    if (a.name !== design.unknown) given[a.name] = design.given[a.name] ?? String(a.default ?? "");
  return { ...design, given };
}

export function newDesign(catalogue: Catalogue, test: string, plan: Design["plan"] = "power"): Design {
  return tidied(catalogue, { test, plan, unknown: SIZE, given: {} });
}

/** The same study planned for the other measure; what both know is kept. */
export function withPlan(catalogue: Catalogue, design: Design, plan: Design["plan"]): Design {
  return tidied(catalogue, { ...design, plan, unknown: SIZE });
}

export function withValue(catalogue: Catalogue, design: Design, name: string, text: string): Design {
  return tidied(catalogue, { ...design, given: { ...design.given, [name]: text } });
}

/** The design with its effect or its sizes given another way. */
export function withWay(catalogue: Catalogue, design: Design, from: Argument[], to: Argument[]): Design {
  const given = { ...design.given };
  for (const name of names(from)) if (!names(to).includes(name)) delete given[name];
  for (const a of to) given[a.name] ??= String(a.default ?? "");
  const lost = names(from).includes(design.unknown) && !names(to).includes(design.unknown);
  return tidied(catalogue, { ...design, unknown: lost ? SIZE : design.unknown, given });
}

/**
 * Finds something else. What was found becomes given: by its last answer where there is one.
 * @param found  texts of the last answer by the names of arguments
 */
export function withUnknown(
  catalogue: Catalogue,
  design: Design,
  unknown: string,
  found: Record<string, string>,
): Design {
  const given: Record<string, string> = { ...design.given };
  if (design.unknown === SIZE) {
    const test = formOf(catalogue, design).test;
    // The first way of giving sizes of which all is known; the first of all otherwise.
    const way = test.sizes.ways.find((w) => w.every((a) => a.name in found)) ?? test.sizes.ways[0]!;
    for (const a of way) given[a.name] = found[a.name] ?? "";
  } else {
    given[design.unknown] = found[design.unknown] ?? "";
  }
  if (unknown === SIZE) {
    const { sizes, test } = formOf(catalogue, design);
    const isShare = (a: Argument) => test.sizes.shares.some((share) => share.name === a.name);
    for (const a of sizes.shown) if (!isShare(a)) delete given[a.name];
  }
  delete given[unknown];
  return tidied(catalogue, { ...design, unknown, given });
}

/** What is asked of the planner. Blanks around numbers are not part of them. */
export function requestOf(catalogue: Catalogue, design: Design): Record<string, string> {
  const form = formOf(catalogue, design);
  const request: Record<string, string> = { test: design.test };
  const target = form.measure.target.name;
  if (design.unknown === target) request["question"] = design.plan;
  else if (design.unknown === SIZE) request["question"] = SIZE;
  else Object.assign(request, { question: "solve", "solve-for": design.unknown });
  const evaluates = design.unknown === target;
  for (const a of allShown(form)) {
    const text = (design.given[a.name] ?? "").replace(/\s+/g, "");
    if (a.name === design.unknown || text === "") continue;
    if (evaluates && form.search.includes(a)) continue;
    request[a.name] = text;
  }
  return request;
}

// ---- The fragment ------------------------------------------------------------------------------------------

/** "t?find=size&mean=5&sd=12": options that have their defaults are left out. */
export function toFragment(catalogue: Catalogue, design: Design): string {
  const words = new URLSearchParams();
  if (design.plan !== "power") words.set("plan", design.plan);
  words.set("find", design.unknown);
  const form = formOf(catalogue, design);
  const ofWays = [...form.effect.shown, ...form.sizes.shown];
  for (const a of allShown(form)) {
    const text = design.given[a.name];
    if (text !== undefined && (ofWays.includes(a) || text !== String(a.default ?? ""))) words.set(a.name, text);
  }
  return `${design.test}?${words}`;
}

/** The design of a fragment; null where it names no test. Unknown names are kept out. */
export function fromFragment(catalogue: Catalogue, fragment: string): Design | null {
  const [name, query] = fragment.split(/\?(.*)/s);
  const test = catalogue.tests.find((t) => t.name === name);
  if (!test) return null;
  const words = new URLSearchParams(query);
  const plan = words.get("plan") === "precision" && test.precision ? "precision" : "power";
  const given: Record<string, string> = {};
  for (const [word, text] of words) if (word !== "plan" && word !== "find") given[word] = text;
  const design: Design = { test: test.name, plan, unknown: words.get("find") || SIZE, given };
  const known = new Set([SIZE, ...allShown(formOf(catalogue, { ...design, unknown: "" })).map((a) => a.name)]);
  return tidied(catalogue, known.has(design.unknown) ? design : { ...design, unknown: SIZE });
}
