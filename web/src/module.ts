// The planner's C interface (include/statplan/ask.h) in a WebAssembly module: text in, text out.

interface Exports {
  memory: WebAssembly.Memory;
  _initialize(): void;
  malloc(bytes: number): number;
  statplan_catalogue(): number;
  statplan_ask(request: number, cancel: number, context: number): number;
  statplan_free(text: number): void;
}

export interface Planner {
  /** The description of all tests, as JSON. */
  catalogue(): string;
  /** A record, a table or a refusal, as JSON. */
  ask(request: string): string;
}

/** What the C library would print goes nowhere: every function of the system answers "bad file". */
function noSystem(module: WebAssembly.Module): WebAssembly.Imports {
  const imports: Record<string, Record<string, () => number>> = {};
  for (const { module: from, name } of WebAssembly.Module.imports(module))
    (imports[from] ??= {})[name] = () => 8;
  return imports;
}

export function start(module: WebAssembly.Module): Planner {
  const planner = new WebAssembly.Instance(module, noSystem(module)).exports as unknown as Exports;
  planner._initialize();

  const read = (text: number): string => {
    const bytes = new Uint8Array(planner.memory.buffer);
    return new TextDecoder().decode(bytes.subarray(text, bytes.indexOf(0, text)));
  };
  const write = (text: string): number => {
    const bytes = new TextEncoder().encode(text + "\0");
    const at = planner.malloc(bytes.length);
    if (at === 0) throw new Error("out of memory");
    new Uint8Array(planner.memory.buffer).set(bytes, at);
    return at;
  };

  return {
    catalogue: () => read(planner.statplan_catalogue()),
    ask(request) {
      const question = write(request);
      const answer = planner.statplan_ask(question, 0, 0);
      planner.statplan_free(question);
      if (answer === 0) throw new Error("out of memory");
      const text = read(answer);
      planner.statplan_free(answer);
      return text;
    },
  };
}
