// What the tests share: the catalogue's examples and the tables of designs as requests, the native planner's
// answers, and the page in Debian's Chromium without a network.
import { execFileSync } from "node:child_process";
import { readFileSync, readdirSync } from "node:fs";
import { transformSync } from "esbuild";
import { chromium } from "playwright-core";

const { ASK_LINES, PAGE, PLANNER_WASM } = process.env;
export const page = `file://${PAGE}`;
export const pageFile = PAGE;

/** The planner of the page, in this process. */
export async function wasmPlanner() {
  const source = readFileSync(new URL("../src/module.ts", import.meta.url), "utf8");
  const { code } = transformSync(source, { loader: "ts" });
  const { start } = await import("data:text/javascript," + encodeURIComponent(code));
  return start(new WebAssembly.Module(readFileSync(PLANNER_WASM)));
}

/** Answers of the native planner. */
export function nativeAnswers(requests) {
  const lines = requests.map((request) => JSON.stringify(request)).join("\n") + "\n";
  const answers = execFileSync(ASK_LINES, { input: lines, encoding: "utf8", maxBuffer: 1 << 28 });
  return answers.trimEnd().split("\n").map((line) => JSON.parse(line));
}

/** "t size --d 0.5" as a request. */
export function requestOfCommand(command) {
  const [test, question, ...words] = command.split(/\s+/);
  const request = { test, question };
  for (let i = 0; i < words.length; i += 2) request[words[i].slice(2)] = words[i + 1];
  return request;
}

/** The designs of tests/data/plan, "t size d=0.5" in the last column. */
export function designsOfTables() {
  const folder = new URL("../../tests/data/plan/", import.meta.url);
  return readdirSync(folder)
    .filter((name) => name.endsWith(".csv"))
    .flatMap((name) => readFileSync(new URL(name, folder), "utf8").split("\n"))
    .map((line) => line.replace(/^[^,]*,[^,]*,/, "").replace(/^"|"$/g, ""))
    .filter((design) => /^[a-z-]+ (power|halfwidth|size|effect|solve) /.test(design))
    .map((design) => {
      const [test, asked, ...words] = design.split(" ");
      const question = asked === "halfwidth" ? "precision" : asked;
      return { test, question, ...Object.fromEntries(words.map((word) => word.replaceAll(";", ",").split(/=(.*)/s))) };
    });
}

export async function browser() {
  return chromium.launch({
    executablePath: "/usr/bin/chromium",
    args: "--no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking --disable-component-update --disable-sync"
      .split(" "),
  });
}

/** The largest relative difference of the numbers in two answers; infinite where anything else differs. */
export function difference(a, b) {
  if (typeof a === "number" && typeof b === "number") return a === b ? 0 : Math.abs(a - b) / Math.max(Math.abs(a), Math.abs(b));
  if (a === null || b === null || typeof a !== "object" || typeof b !== "object") return a === b ? 0 : Infinity;
  const keys = new Set([...Object.keys(a), ...Object.keys(b)]);
  return Math.max(0, ...[...keys].map((key) => difference(a[key], b[key])));
}
