// The planner in a worker, so that the page answers to the keyboard during the longest search. A worker has no
// way to hear "stop" while it computes: stopping ends it, and the next question starts another from the same
// compiled module.
import type { Answer, Catalogue } from "./catalogue";
import { start } from "./module";

type Message = { catalogue: string } | { answer: string } | { failed: string };

/** What the script does in the worker: the module first, then one request after the other. */
export function serve(worker: Pick<Worker, "onmessage" | "postMessage">): void {
  let planner: ReturnType<typeof start>;
  const post = (message: Message) => worker.postMessage(message);
  worker.onmessage = ({ data }: MessageEvent<WebAssembly.Module | string>) => {
    try {
      if (typeof data === "string") return post({ answer: planner.ask(data) });
      planner = start(data);
      post({ catalogue: planner.catalogue() });
    } catch (error) {
      post({ failed: String(error) });
    }
  };
}

/** The script of this page, which is the worker's, too. */
let script: string | undefined;
const ownScript = () =>
  (script ??= URL.createObjectURL(
    new Blob([document.querySelector("script:not([type])")!.textContent!], { type: "text/javascript" }),
  ));

export class Stopped extends Error {}

/** One question at a time: a new one stops the one before. */
export class Planner {
  private worker: Worker | undefined;
  private waiting: { resolve(answer: Answer): void; reject(why: Error): void } | undefined;
  private started: Promise<string> | undefined;

  constructor(private readonly module: Promise<WebAssembly.Module>) {}

  async catalogue(): Promise<Catalogue> {
    return JSON.parse(await this.running()) as Catalogue;
  }

  async ask(request: object): Promise<Answer> {
    if (this.waiting) this.stop();
    return new Promise((resolve, reject) => {
      const waiting = { resolve, reject };
      this.waiting = waiting;
      this.running().then(
        () => this.waiting === waiting && this.worker!.postMessage(JSON.stringify(request)),
        reject,
      );
    });
  }

  stop(): void {
    const waiting = this.waiting;
    this.end();
    waiting?.reject(new Stopped());
  }

  private end(): void {
    this.worker?.terminate();
    this.worker = this.started = this.waiting = undefined;
  }

  private running(): Promise<string> {
    return (this.started ??= this.launch());
  }

  private launch(): Promise<string> {
    const worker = (this.worker = new Worker(ownScript()));
    return new Promise((resolve, reject) => {
      const failed = (why: string) => {
        if (worker !== this.worker) return;
        const waiting = this.waiting;
        this.end();
        const error = new Error(why);
        reject(error);
        waiting?.reject(error);
      };
      worker.onerror = (event) => failed(event.message);
      worker.onmessage = ({ data }: MessageEvent<Message>) => {
        if ("failed" in data) return failed(data.failed);
        if ("catalogue" in data) return resolve(data.catalogue);
        const waiting = this.waiting;
        this.waiting = undefined;
        waiting?.resolve(JSON.parse(data.answer) as Answer);
      };
      this.module.then((module) => worker.postMessage(module), (error) => failed(String(error)));
    });
  }
}

/** Unpacks the module that the page carries. */
export async function compiled(): Promise<WebAssembly.Module> {
  const packed = atob(document.getElementById("planner")!.textContent!.trim());
  const bytes = Uint8Array.from(packed, (c) => c.charCodeAt(0));
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
  return WebAssembly.compile(await new Response(stream).arrayBuffer());
}
