// One HTML file: script, style and the packed planner inside, and a content security policy that names exactly
// these and no server.
import { createHash } from "node:crypto";
import { readFileSync } from "node:fs";
import { gzipSync } from "node:zlib";
import { defineConfig } from "vite";

const wasm = process.env.PLANNER_WASM;

const hash = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;

function selfContained() {
  return {
    name: "self-contained",
    enforce: "post",
    generateBundle(_, bundle) {
      const take = (ending) => {
        const name = Object.keys(bundle).find((file) => file.endsWith(ending));
        const { code, source } = bundle[name];
        delete bundle[name];
        return String(code ?? source).trim();
      };
      const script = take(".js").replaceAll("</script", "<\\/script");
      const style = take(".css");
      const policy = [
        "default-src 'none'",
        `script-src ${hash(script)} 'wasm-unsafe-eval'`,
        "worker-src blob:",
        `style-src ${hash(style)}`,
        "img-src data: blob:",
        "base-uri 'none'",
        "form-action 'none'",
      ].join("; ");
      const planner = gzipSync(readFileSync(wasm), { level: 9 }).toString("base64");
      const page = bundle["index.html"];
      page.source = page.source
        .replace(/\s*<(script|link)[^>]*(crossorigin|stylesheet)[^>]*>(<\/script>)?/g, "")
        .replace("<!-- policy -->", () => `<meta http-equiv="Content-Security-Policy" content="${policy}">`)
        .replace("<!-- style -->", () => `<style>${style}</style>`)
        .replace("<!-- planner -->", () => `<script type="application/gzip" id="planner">${planner}</script>`)
        .replace("<!-- script -->", () => `<script>${script}</script>`);
      page.fileName = "statpower.html";
    },
  };
}

export default defineConfig({
  plugins: [selfContained()],
  build: {
    outDir: process.env.PAGE_FOLDER,
    emptyOutDir: false,
    target: "es2022",
    cssCodeSplit: false,
    modulePreload: false,
    rollupOptions: { output: { format: "iife" } },
  },
});
