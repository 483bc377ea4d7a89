import "./style.css";
import { render } from "preact";
import { App } from "./app";
import { Planner, compiled, serve } from "./planner";

if (typeof document === "undefined") {
  serve(self as unknown as Worker);
} else {
  const root = document.getElementById("page")!;
  const module = compiled();
  const planners = { answers: new Planner(module), curves: new Planner(module), beside: new Planner(module) };
  planners.answers.catalogue().then(
    (catalogue) => {
      root.textContent = "";
      render(<App catalogue={catalogue} planners={planners} />, root);
    },
    (error) => {
      root.textContent = `This browser cannot run the planner (${String(error)}). It needs WebAssembly and DecompressionStream.`;
    },
  );
}
