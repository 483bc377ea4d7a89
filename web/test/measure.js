// Measures the page: scripts/page --measure. Medians of several turns; what is compared runs in turns in one run.
import { execFileSync } from "node:child_process";
import { statSync } from "node:fs";
import { browser, page, pageFile, wasmPlanner } from "./support.js";

const TURNS = 9;
const median = (values) => [...values].sort((a, b) => a - b)[values.length >> 1];
const row = (what, ms) => console.log(`${what.padEnd(62)} ${ms.toFixed(1).padStart(8)} ms`);

const chromium = await browser();
const opened = async (hash) => {
  const context = await chromium.newContext({ offline: true });
  const tab = await context.newPage();
  await tab.goto(page + hash);
  await tab.waitForSelector(".headline");
  return { context, tab };
};

/** From an input to the answer on the page, in milliseconds. */
const typed = (tab, name, text) =>
  tab.evaluate(
    ([field, value]) =>
      new Promise((done) => {
        const input = document.querySelector(`[name="${field}"]`);
        const answer = document.querySelector(".answer");
        const begun = performance.now();
        new MutationObserver((_, observer) => {
          if (answer.classList.contains("busy")) return;
          observer.disconnect();
          done(performance.now() - begun);
        }).observe(answer, { attributes: true, subtree: true, childList: true, characterData: true });
        input.value = value;
        input.dispatchEvent(new Event("input", { bubbles: true }));
      }),
    [name, text],
  );

console.log(`${"the page".padEnd(62)} ${(statSync(pageFile).size / 1000).toFixed(1).padStart(8)} kB`);

const cold = [];
for (let i = 0; i < TURNS; ++i) {
  const context = await chromium.newContext({ offline: true });
  const tab = await context.newPage();
  await tab.addInitScript(() => {
    const observer = new MutationObserver(() => {
      if (!document.querySelector(".headline")) return;
      observer.disconnect();
      globalThis.firstAnswer = performance.now();
    });
    observer.observe(document, { childList: true, subtree: true });
  });
  await tab.goto(`${page}#t-two?find=size&diff=5&sd=12`);
  await tab.waitForFunction(() => globalThis.firstAnswer);
  cold.push(await tab.evaluate(() => globalThis.firstAnswer));
  await context.close();
}
row("first answer, file:// in a new context, from navigation", median(cold));

{
  const { context, tab } = await opened("#t-two?find=size&diff=5&sd=12");
  const keys = [];
  for (let i = 0; i < 40; ++i) keys.push(await typed(tab, "diff", String(4 + i / 20)));
  row("a keystroke, t-two size (raw effect): input to answer", median(keys));
  row("  the slowest of 40", Math.max(...keys));
  const curves = [];
  for (let i = 0; i < TURNS; ++i) {
    curves.push(
      await tab.evaluate(
        (to) =>
          new Promise((done) => {
            const curve = document.querySelector(".curve");
            const end = () => document.querySelector(".point.movable")?.getAttribute("aria-valuemax");
            const before = end();
            const input = document.querySelector("[name=curve-to]");
            const begun = performance.now();
            new MutationObserver((_, observer) => {
              if (end() === before || curve.querySelector("progress")) return;
              observer.disconnect();
              done(performance.now() - begun);
            }).observe(curve, { attributes: true, subtree: true, childList: true });
            input.value = to;
            input.dispatchEvent(new Event("input", { bubbles: true }));
          }),
        String(401 + 3 * i),
      ),
    );
  }
  row("a curve of 200 points, t-two: choice to picture", median(curves));
  await context.close();
}

const planner = await wasmPlanner();
const fisher = { test: "prop-two", question: "power", p1: 0.3, p2: 0.5, n: 100, statistic: "fisher", method: "exact" };
const requests = (count) => Array.from({ length: count }, (_, i) => ({ ...fisher, p1: 0.3 + i / 1000 }));
const native = (count) => {
  const input = requests(count).map((request) => JSON.stringify(request)).join("\n") + "\n";
  const begun = performance.now();
  execFileSync(process.env.ASK_LINES, { input, maxBuffer: 1 << 28 });
  return performance.now() - begun;
};
const inPage = (await opened("#prop-two?find=power&p1=0.3&p2=0.5&n=100&statistic=fisher&method=exact")).tab;
const [ofNative, ofModule, ofPage] = [[], [], []];
for (let i = 0; i < TURNS; ++i) {
  ofNative.push((native(201) - native(1)) / 200);
  const begun = performance.now();
  for (const request of requests(50)) planner.ask(JSON.stringify(request));
  ofModule.push((performance.now() - begun) / 50);
  ofPage.push(await typed(inPage, "p1", String(0.3 + (i + 1) / 1000)));
}
row("Fisher's exact power at 100, 100: native", median(ofNative));
row("  as WebAssembly in node", median(ofModule));
row("  in the page, keystroke to answer", median(ofPage));
console.log(`${"  WebAssembly over native".padEnd(62)} ${(median(ofModule) / median(ofNative)).toFixed(2).padStart(8)}`);
await chromium.close();
