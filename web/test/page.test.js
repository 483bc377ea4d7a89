// The page in a browser: from a disk, without a network.
import assert from "node:assert/strict";
import { readFileSync, statSync } from "node:fs";
import { after, before, test } from "node:test";
import { createRequire } from "node:module";
import { browser, difference, nativeAnswers, page, pageFile, requestOfCommand, wasmPlanner } from "./support.js";

const catalogue = JSON.parse((await wasmPlanner()).catalogue());
const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");
let chromium;
before(async () => (chromium = await browser()));
after(() => chromium.close());

/** A new page, offline; any request but for the file itself, and any error, fails the test. */
async function open(t, hash = "", options = {}) {
  const context = await chromium.newContext({ offline: true, acceptDownloads: true, bypassCSP: false, ...options });
  const tab = await context.newPage();
  tab.setDefaultTimeout(60_000);
  const wrong = [];
  tab.on("request", (request) => /^(file|blob|data):/.test(request.url()) || wrong.push(request.url()));
  tab.on("pageerror", (error) => wrong.push(error.message));
  tab.on("console", (message) => message.type() === "error" && wrong.push(message.text()));
  await tab.goto(page + hash);
  await tab.waitForSelector(".chooser, .headline, [data-refusal]");
  t.after(async () => {
    await context.close();
    assert.deepEqual(wrong, []);
  });
  return tab;
}

/** The numbers of the answer on the page once it is settled. */
async function answerOn(tab) {
  await tab.waitForSelector(".answer:not(.busy) .headline");
  return tab.$$eval(".headline [data-answer]", (items) =>
    Object.fromEntries(
      items.map((item) => {
        const number = item.querySelector("data");
        return [item.dataset.answer, number ? Number(number.value) : item.querySelector("dd").textContent.split(", ").map(Number)];
      }),
    ),
  );
}

/** Answers settle: the page has seen the last input, and computed what the form says. */
async function settled(tab) {
  await tab.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => setTimeout(done)))));
  await tab.waitForFunction(() => !document.querySelector(".answer.busy"), null, { timeout: 60_000 });
}

const choose = (tab, name) => tab.getByRole("radio", { name, exact: true }).check();

const pressed = (tab, legend, texts) =>
  tab.evaluate(
    ([given, name]) => {
      // Chooses, in groups of ways, the way that has all the given arguments and fewest others.
      for (const group of document.querySelectorAll(`[role=radiogroup][aria-label="${name}"]`)) {
        const ways = [...group.querySelectorAll("label")].map((label) => ({ label, words: label.textContent.trim().split(", ") }));
        const known = new Set(ways.flatMap((way) => way.words));
        const wanted = given.filter((word) => known.has(word));
        const fitting = ways.filter((way) => wanted.every((word) => way.words.includes(word)));
        fitting.sort((a, b) => a.words.length - b.words.length);
        if (wanted.length) fitting[0].label.querySelector("input").click();
      }
    },
    [texts, legend],
  );

/** Fills a form as a person does who wants this request answered. */
async function fill(tab, request) {
  const { test: name, question, "solve-for": solveFor, ...given } = request;
  await tab.click(`[data-test="${name}"]`);
  const described = catalogue.tests.find((each) => each.name === name);
  const inPrecision = described.precision?.options.map((a) => a.name).concat("halfwidth") ?? [];
  const inPower = described.power.options.map((a) => a.name).concat("power");
  const precision =
    question === "precision" || Object.keys(given).some((word) => inPrecision.includes(word) && !inPower.includes(word));
  if (precision) await choose(tab, "Precision of the estimate");
  const target = precision ? "halfwidth" : "power";
  const evaluates = question === "power" || (question === "precision" && !("halfwidth" in given));
  if (evaluates) await tab.click(`.field:has([name="${target}"]) .find`);
  await pressed(tab, "Given as", Object.keys(given));
  if (solveFor) await tab.click(`.field:has([name="${solveFor}"]) .find`);
  await pressed(tab, "Given as", [...Object.keys(given), ...(solveFor ? [solveFor] : [])]);
  // Choices first: they decide which fields there are.
  const entries = Object.entries(given);
  const isChoice = (word) => tab.$eval(`[name="${word}"]`, (field) => field.tagName === "SELECT").catch(() => false);
  for (const [word, text] of entries) if (await isChoice(word)) await tab.selectOption(`[name="${word}"]`, text);
  await tab.evaluate(() => document.querySelectorAll("details").forEach((part) => (part.open = true)));
  for (const [word, text] of entries) if (!(await isChoice(word))) await tab.fill(`[name="${word}"]`, text);
  await settled(tab);
}

for (const described of catalogue.tests)
  test(`${described.name}: examples are answered as the native planner answers them`, async (t) => {
    for (const example of described.examples) {
      const request = requestOfCommand(example.command);
      const [native] = nativeAnswers([request]);
      const tab = await open(t);
      await fill(tab, request);
      const answer = await answerOn(tab);
      assert.ok(difference(answer, native.answer) <= 1e-9, `${example.command}: ${JSON.stringify(answer)}`);
      assert.equal(await tab.textContent("[data-report]"), native.report);
      // The address brings the same study back.
      const again = await open(t, new URL(tab.url()).hash);
      await settled(again);
      assert.deepEqual(await answerOn(again), answer);
      assert.equal(new URL(again.url()).hash, new URL(tab.url()).hash);
    }
  });

test("the page is one file under 600 KB and its policy allows no server", async () => {
  assert.ok(statSync(pageFile).size < 600_000);
  const text = readFileSync(pageFile, "utf8");
  const policy = /http-equiv="Content-Security-Policy" content="([^"]*)"/.exec(text)[1];
  assert.match(policy, /default-src 'none'/);
  assert.doesNotMatch(policy, /https?:|'unsafe-inline'|'unsafe-eval'|\*/);
  assert.doesNotMatch(text, /<(script|link|img)[^>]*(src|href)="(?!data:)/);
});

test("from two groups, a mean, difference 5 and standard deviation 12 to the sentence in five actions", async (t) => {
  const tab = await open(t);
  let actions = 0;
  const act = async (what) => (++actions, await what);
  const family = catalogue.tests.find((each) => each.sizes.found.length === 2 && /mean/.test(each.title)).family;
  await act(choose(tab, family));
  await act(choose(tab, "Two groups"));
  await act(tab.click(".tests button"));
  await act(tab.fill("[name=diff]", "5"));
  await act(tab.fill("[name=sd]", "12"));
  await settled(tab);
  const sentence = await tab.textContent("[data-report]");
  assert.match(sentence, /a difference of 5/);
  assert.match(sentence, /power of 80/);
  assert.ok(actions <= 5);
  t.diagnostic(`${actions} actions: ${sentence}`);
});

test("a refusal stands at its field in the planner's words, and nothing is corrected", async (t) => {
  for (const described of catalogue.tests) {
    const request = requestOfCommand(described.examples[0].command);
    const tab = await open(t);
    await fill(tab, request);
    await tab.fill("[name=alpha], [name=confidence]", "1.5");
    await settled(tab);
    const name = await tab.$eval("[name=alpha], [name=confidence]", (field) => field.name);
    const [{ refusal }] = nativeAnswers([{ ...request, [name]: "1.5" }]);
    assert.equal(refusal.argument, name);
    assert.equal(await tab.textContent(`#field-${name}-error`), refusal.reason);
    assert.equal(await tab.getAttribute(`[name=${name}]`, "aria-invalid"), "true");
    assert.equal(await tab.inputValue(`[name=${name}]`), "1.5");
  }
});

test("any number that is left out is found", async (t) => {
  for (const described of catalogue.tests) {
    const example = described.examples.find((each) => / (size|power) /.test(each.command));
    const request = requestOfCommand(example.command);
    const tab = await open(t);
    await fill(tab, request);
    const asked = await answerOn(tab);
    // The significance level of the same design with the same power is the one that it has.
    if (request.question === "power") {
      await tab.click(`.field:has([name=alpha]) .find`);
      await settled(tab);
      const { alpha, power } = await answerOn(tab);
      assert.ok(Math.abs(power - asked.power) < 1e-5, `${example.command}: ${power}`);
      assert.ok(Math.abs(alpha - Number(request.alpha ?? 0.05)) < 1e-3, `${example.command}: ${alpha}`);
    } else {
      await tab.click(`.field:has([name=power]) .find`);
      await settled(tab);
      const { power } = await answerOn(tab);
      assert.ok(Math.abs(power - asked.power) < 1e-9, `${example.command}: ${power}`);
    }
  }
});

test("every number of a form can be left out, one after the other, and is found as the native planner finds it", async (t) => {
  let solved = 0;
  for (const described of catalogue.tests) {
    const tab = await open(t);
    await fill(tab, requestOfCommand(described.examples.find((each) => / (size|power) /.test(each.command)).command));
    await tab.click(".field:has([name=power]) .find, .field:has([data-found=power]) .find").catch(() => {});
    await settled(tab);
    const names = await tab.$$eval(".form .field:has(.find) [name]", (all) => all.map((each) => each.name));
    for (const name of names.filter((each) => each !== "power")) {
      await tab.click(`.field:has([name="${name}"]) .find`);
      await settled(tab);
      if (!(await tab.$(".answer .headline"))) continue;
      const given = await tab.$$eval(".form .field:not(:has(.find[aria-pressed=true])) [name]", (all) =>
        all.filter((each) => each.value !== "" && each.offsetParent).map((each) => [each.name, each.value.replaceAll(", ", ",")]),
      );
      const request = { test: described.name, question: "solve", "solve-for": name, ...Object.fromEntries(given) };
      const [native] = nativeAnswers([request]);
      assert.ok(native.answer, `${JSON.stringify(request)}: ${JSON.stringify(native)}`);
      assert.ok(difference(await answerOn(tab), native.answer) <= 1e-9, JSON.stringify(request));
      ++solved;
    }
  }
  t.diagnostic(`${solved} solved`);
  assert.ok(solved >= 2 * catalogue.tests.length);
});

test("axe finds nothing wrong: choosing, answering, refusing; light and dark; desktop and phone", async (t) => {
  const [first] = catalogue.tests;
  const request = requestOfCommand(first.examples[0].command);
  for (const colorScheme of ["light", "dark"])
    for (const viewport of [{ width: 1280, height: 900 }, { width: 360, height: 740 }]) {
      const tab = await open(t, "", { colorScheme, viewport });
      const check = async (state) => {
        await tab.evaluate(axe);
        const { violations } = await tab.evaluate(() => globalThis.axe.run());
        assert.deepEqual(violations.map((v) => [v.id, v.nodes.map((n) => n.html).slice(0, 3)]), [], state);
      };
      await check("choosing");
      await fill(tab, request);
      await tab.waitForSelector(".chart");
      await check("answering");
      await tab.fill("[name=alpha]", "2");
      await settled(tab);
      await check("refusing");
      const wide = await tab.evaluate(() => document.documentElement.scrollWidth > document.documentElement.clientWidth);
      assert.ok(!wide, `scrolls sideways at ${viewport.width}`);
    }
});

test("the keyboard alone gets from the start to the answer", async (t) => {
  const tab = await open(t);
  const reach = async (selector) => {
    for (let i = 0; i < 80; ++i) {
      await tab.keyboard.press("Tab");
      if (await tab.evaluate((s) => document.activeElement.matches(s), selector)) return;
    }
    assert.fail(`${selector} is not reached by Tab`);
  };
  const [first] = catalogue.tests;
  const request = requestOfCommand(first.examples[0].command);
  await reach(`[data-test="${first.name}"]`);
  await tab.keyboard.press("Enter");
  await pressed(tab, "Given as", Object.keys(request));
  for (const [name, text] of Object.entries(request).slice(2)) {
    await reach(`[name="${name}"]`);
    await tab.keyboard.type(text);
  }
  await settled(tab);
  await answerOn(tab);
  await tab.waitForSelector(".point.movable");
  await reach(".point.movable");
  const before = await tab.getAttribute(".point.movable", "aria-valuenow");
  await tab.keyboard.press("PageUp");
  await tab.waitForFunction((old) => document.querySelector(".point.movable")?.getAttribute("aria-valuenow") !== old, before);
});

test("tables and pictures are saved", async (t) => {
  const described = catalogue.tests[0];
  const tab = await open(t);
  await fill(tab, requestOfCommand(described.examples[0].command));
  await tab.waitForSelector(".chart .line");
  const saved = async (label) => {
    const [download] = await Promise.all([tab.waitForEvent("download"), tab.click(`.curve >> text=${label}`)]);
    return readFileSync(await download.path());
  };
  const rows = (await saved("CSV")).toString().trim().split("\r\n");
  assert.ok(rows.length > 10 && rows.every((row) => row.split(",").length === rows[0].split(",").length));
  const svg = (await saved("SVG")).toString();
  assert.match(svg, /^<svg [^>]*xmlns=/);
  assert.match(svg, /<path[^>]* stroke="rgb/);
  assert.equal((await saved("PNG")).subarray(1, 4).toString(), "PNG");
});

test("a long search shows that it works, and Stop stops it", async (t) => {
  const { tab, size } = await oneGroup(t);
  const { power } = await answerOn(tab);
  await tab.click(".field:has([name=power]) .find");
  await settled(tab);
  await tab.fill(`[name=${size}]`, "10:1000000");
  await tab.waitForSelector(".answer progress");
  await tab.click(".answer >> text=Stop");
  await tab.waitForSelector(".answer >> text=Stopped");
  assert.equal(await tab.$(".answer progress"), null);
  // And the planner answers the next question.
  await tab.click(`.find[aria-label="solve for: sample size"]`);
  await tab.fill("[name=power]", "0.8");
  await settled(tab);
  assert.ok(Math.abs((await answerOn(tab)).power - power) < 1e-9);
});

/** A page that shows the first size example of a test with one group, and the name of its size. */
async function oneGroup(t) {
  const described = catalogue.tests.find((each) => each.sizes.found.length === 1 && each.sizes.found[0].kind === "whole");
  const tab = await open(t);
  await fill(tab, requestOfCommand(described.examples.find((each) => / size /.test(each.command)).command));
  await tab.waitForSelector(".chart .line");
  return { tab, described, size: described.sizes.found[0].name };
}

test("the point is dragged along the curve: the target follows, then the size where it is given", async (t) => {
  const { tab, size } = await oneGroup(t);
  const drag = async (by) => {
    const box = await (await tab.waitForSelector(".point.movable")).boundingBox();
    const [x, y] = [box.x + box.width / 2, box.y + box.height / 2];
    await tab.mouse.move(x, y);
    await tab.mouse.down();
    await tab.mouse.move(x + by, y, { steps: 4 });
    const reading = await tab.textContent(".reading .at");
    await tab.mouse.up();
    await settled(tab);
    return Number(reading.split(" ").at(-1));
  };
  const before = await answerOn(tab);
  const read = await drag(80);
  const after_ = await answerOn(tab);
  assert.ok(after_[size] > before[size]);
  assert.equal(after_[size], read);
  assert.ok(Number(await tab.inputValue("[name=power]")) > 0.8);
  await tab.click(".field:has([name=power]) .find");
  await settled(tab);
  await tab.waitForSelector(`[name=${size}]`);
  const dragged = await drag(-100);
  assert.equal(Number(await tab.inputValue(`[name=${size}]`)), dragged);
  assert.ok((await answerOn(tab)).power < after_.power);
});

test("several lines, contours, and their table; the address keeps them", async (t) => {
  const { tab, size } = await oneGroup(t);
  await tab.selectOption("[name=curve-lines]", "alpha");
  await tab.fill("[name=curve-values]", "0.01, 0.05");
  await tab.waitForFunction(() => document.querySelectorAll(".chart > svg path.line").length === 2);
  assert.match(await tab.textContent(".chart > svg .key"), /alpha = 0.01.*alpha = 0.05/);
  const [picture] = await Promise.all([tab.waitForEvent("download"), tab.click(".curve >> text=SVG")]);
  assert.match(readFileSync(await picture.path(), "utf8"), /alpha = 0.01.*alpha = 0.05/);
  await choose(tab, "contours");
  await tab.waitForSelector(".chart .level");
  await tab.waitForFunction(() => !document.querySelector(".curve progress"));
  const [download] = await Promise.all([tab.waitForEvent("download"), tab.click(".curve >> text=CSV")]);
  const rows = readFileSync(await download.path(), "utf8").trim().split("\r\n").map((row) => row.split(","));
  const [names, ...values] = rows;
  assert.deepEqual(names, ["alpha", size, "power"]);
  const [alpha, n, power] = values.find((row) => row[2] > 0.3);
  const request = requestOfCommand(
    catalogue.tests.find((each) => tab.url().includes(`#${each.name}?`)).examples.find((each) => / size /.test(each.command)).command,
  );
  const [native] = nativeAnswers([{ ...request, question: "power", power: null, alpha, [size]: n }]);
  assert.ok(Math.abs(native.answer.power - power) < 1e-9);
  const again = await open(t, new URL(tab.url()).hash);
  await again.waitForSelector(".chart .level");
});

test("several values in the form make a table and its chart", async (t) => {
  const { tab, size } = await oneGroup(t);
  await tab.fill("[name=alpha]", "0.01, 0.05, 0.1");
  await settled(tab);
  await tab.waitForSelector(".answer table");
  const cells = await tab.$$eval(".answer tbody tr", (all) => all.map((row) => [...row.children].map((cell) => Number(cell.textContent))));
  assert.deepEqual(cells.map((row) => row[0]), [0.01, 0.05, 0.1]);
  assert.ok(cells[0][1] > cells[1][1] && cells[1][1] > cells[2][1], `${size} falls: ${cells}`);
  await tab.waitForSelector(".answer .chart .line");
});

test("two designs stand side by side, also from the address, and the session remembers its designs", async (t) => {
  const { tab } = await oneGroup(t);
  await tab.waitForTimeout(1600);
  const kept = await answerOn(tab);
  await tab.click("text=Keep to compare");
  await tab.fill("[name=alpha]", "0.01");
  await settled(tab);
  const now = await answerOn(tab);
  const beside = async (page_) => {
    await page_.waitForSelector(".beside table");
    return page_.$$eval(".beside tbody:nth-of-type(2) tr", (rows) => rows.slice(1).map((row) => [...row.querySelectorAll("td")].map((cell) => Number(cell.textContent))));
  };
  const names = Object.keys(kept);
  const rows = await beside(tab);
  rows.forEach(([left, right], i) => {
    assert.ok(Math.abs(left - kept[names[i]]) < 1e-5 && Math.abs(right - now[names[i]]) < 1e-5, names[i]);
  });
  assert.deepEqual(await beside(await open(t, new URL(tab.url()).hash)), rows);
  await tab.waitForSelector(".history li:nth-child(2)");
  await tab.click(".history li:nth-child(2) a");
  await settled(tab);
  assert.deepEqual(await answerOn(tab), kept);
});

test("on paper: the form, the answer and the curve, no buttons", async (t) => {
  const { tab } = await oneGroup(t);
  await tab.emulateMedia({ media: "print" });
  assert.equal(await tab.$$eval("button", (all) => all.filter((button) => button.offsetParent).length), 0);
  assert.ok(await tab.isVisible("[data-report]"));
  assert.ok(await tab.isVisible(".chart > svg"));
});
