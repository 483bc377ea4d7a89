// Questions that follow what is typed: the newest one counts, the last answer stays until the next one is there.
import { useEffect, useRef, useState } from "preact/hooks";
import type { Answer, Table } from "./catalogue";
import { isRefusal, isTable } from "./catalogue";
import { appended, type Curve } from "./curve";
import { Stopped, type Planner } from "./planner";

export interface Asked {
  answer: Answer | undefined;
  /** The request that `answer` answers. */
  of: string | undefined;
  busy: boolean;
  stopped: boolean;
  stop(): void;
  again(): void;
}

const failure = (error: unknown): Answer => ({
  refusal: { kind: "no-answer", reason: String(error), message: `The planner failed: ${String(error)}` },
});

export function useAnswer(planner: Planner, request: object | null): Asked {
  const text = request && JSON.stringify(request);
  const [result, setResult] = useState<{ answer: Answer; of: string }>();
  const [stopped, setStopped] = useState<string>();
  const [attempt, setAttempt] = useState(0);
  useEffect(() => {
    if (!text) return;
    let current = true;
    setStopped(undefined);
    planner
      .ask(JSON.parse(text) as object)
      .catch((error: unknown) => (error instanceof Stopped ? undefined : failure(error)))
      .then((answer) => {
        if (!current) return;
        if (answer) setResult({ answer, of: text });
        else setStopped(text);
      });
    return () => {
      current = false;
    };
  }, [text, attempt]);
  return {
    answer: text ? result?.answer : undefined,
    of: result?.of,
    busy: text !== null && result?.of !== text && stopped !== text,
    stopped: text !== null && stopped === text,
    stop: () => planner.stop(),
    again: () => setAttempt(attempt + 1),
  };
}

export interface Drawn {
  table: Table | undefined;
  /** The curve that `table` is of. */
  curve: Curve | undefined;
  /** 0 to 1 */
  progress: number;
  stop(): void;
}

/** Points of a curve that are asked for at once: a line that takes long grows on the page. */
const AT_ONCE = 25;

export function useCurve(planner: Planner, curve: Curve | null): Drawn {
  const key = curve && JSON.stringify([curve.request(curve.values[0]!, curve.xs), curve.values, curve.contour]);
  const [drawn, setDrawn] = useState<{ table: Table | undefined; curve: Curve; progress: number }>();
  const latest = useRef(0);
  useEffect(() => {
    if (!curve) return;
    const own = ++latest.current;
    const run = async () => {
      let table: Table | undefined;
      let shownAt = performance.now();
      const parts = inParts(curve.xs);
      const steps = curve.values.length * parts.length;
      let done = 0;
      for (const value of curve.values)
        for (const xs of parts) {
          const part = await planner.ask(curve.request(value, xs));
          if (own !== latest.current) return;
          ++done;
          if (isRefusal(part) || !isTable(part)) continue;
          table = appended(table, withLine(part, curve, value));
          if (done === steps || performance.now() - shownAt > 100) {
            shownAt = performance.now();
            setDrawn({ table, curve, progress: done / steps });
          }
        }
      setDrawn({ table, curve, progress: 1 });
    };
    run().catch(() => own === latest.current && setDrawn((last) => last && { ...last, progress: 1 }));
    return () => {
      ++latest.current;
    };
  }, [key]);
  return {
    table: curve ? drawn?.table : undefined,
    curve: curve ? drawn?.curve : undefined,
    progress: drawn?.progress ?? 1,
    stop: () => planner.stop(),
  };
}

/** The points in parts; none of a single one, which would not be a table. */
function inParts(xs: number[]): number[][] {
  const parts: number[][] = [];
  for (let i = 0; i < xs.length; i += AT_ONCE) parts.push(xs.slice(i, i + AT_ONCE));
  if (parts.length > 1 && parts.at(-1)!.length === 1) parts.at(-2)!.push(...parts.pop()!);
  return parts;
}

/** The table with the value of its line as a first column. */
function withLine(table: Table, curve: Curve, value: number | string): Table {
  if (!curve.lines) return table;
  const { name } = curve.lines.argument;
  const rows = Object.values(table.columns)[0]!.length;
  return { ...table, over: [name, ...table.over], columns: { [name]: Array<number | string>(rows).fill(value), ...table.columns } };
}
