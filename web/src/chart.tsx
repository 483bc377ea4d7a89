// A chart of a table: lines or contours, as SVG, which is what the page shows, prints and saves.
import { contours } from "d3-contour";
import { scaleLinear } from "d3-scale";
import { line as lineThrough } from "d3-shape";
import type { ComponentChildren } from "preact";
import { useLayoutEffect, useRef, useState } from "preact/hooks";
import { shown } from "./catalogue";

export interface Line {
  name: string;
  xs: number[];
  ys: (number | null)[];
}

export interface Point {
  x: number;
  y: number;
}

interface Frame {
  xLabel: string;
  yLabel: string;
  /** The whole picture in a sentence, for those who do not see it. */
  description: string;
}

const MARGIN = { top: 16, right: 18, bottom: 46, left: 58 };

/** The picture's size in its own units, which grow with the letters of the page. */
function useSize() {
  const box = useRef<HTMLDivElement>(null);
  const [{ width, scale }, setSize] = useState({ width: 640, scale: 1 });
  useLayoutEffect(() => {
    const observer = new ResizeObserver(([entry]) => {
      const scale = parseFloat(getComputedStyle(document.documentElement).fontSize) / 16;
      setSize({ width: Math.max(260, Math.round(entry!.contentRect.width / scale)), scale });
    });
    observer.observe(box.current!);
    return () => observer.disconnect();
  }, []);
  return { box, width, height: Math.round(Math.min(440, Math.max(250, width * 0.56))), scale };
}

interface KeyItem {
  name: string;
  swatch: ComponentChildren;
}

/** How the items of a key stand: as many in a row as there is room for. */
function keyOf(items: KeyItem[], width: number) {
  const column = 52 + 7.5 * Math.max(0, ...items.map((item) => item.name.length));
  const columns = Math.max(1, Math.floor((width - MARGIN.left - MARGIN.right) / column));
  const at = (i: number) => `translate(${MARGIN.left + (i % columns) * column} ${12 + 20 * Math.floor(i / columns)})`;
  return { height: items.length ? 20 * Math.ceil(items.length / columns) + 6 : 0, at };
}

/** Which line or shade is which, in the picture, so that it is saved with it. */
function Key({ items, width, top }: { items: KeyItem[]; width: number; top: number }) {
  const { at } = keyOf(items, width);
  return (
    <g class="key" transform={`translate(0 ${top})`}>
      {items.map((item, i) => (
        <g key={item.name} transform={at(i)}>
          {item.swatch}
          <text x={34} dy="0.32em">{item.name}</text>
        </g>
      ))}
    </g>
  );
}

type Scale = ReturnType<typeof scaleLinear<number>>;

function Axes({ x, y, width, height, frame }: { x: Scale; y: Scale; width: number; height: number; frame: Frame }) {
  const bottom = height - MARGIN.bottom;
  return (
    <g class="axes">
      {y.ticks(6).map((tick) => (
        <g key={tick} transform={`translate(0 ${y(tick)})`}>
          <line class="grid" x1={MARGIN.left} x2={width - MARGIN.right} />
          <text x={MARGIN.left - 8} dy="0.32em" text-anchor="end">{y.tickFormat(6)(tick)}</text>
        </g>
      ))}
      {x.ticks(Math.max(3, Math.floor(width / 90))).map((tick) => (
        <g key={tick} transform={`translate(${x(tick)} ${bottom})`}>
          <line class="tick" y2={5} />
          <text y={18} text-anchor="middle">{shown(Number(tick.toPrecision(12)))}</text>
        </g>
      ))}
      <line class="axis" x1={MARGIN.left} x2={width - MARGIN.right} y1={bottom} y2={bottom} />
      <text class="label" x={(MARGIN.left + width - MARGIN.right) / 2} y={height - 8} text-anchor="middle">
        {frame.xLabel}
      </text>
      <text class="label" transform={`translate(14 ${(MARGIN.top + bottom) / 2}) rotate(-90)`} text-anchor="middle">
        {frame.yLabel}
      </text>
    </g>
  );
}

/** Where the pointer is, in the picture's units. */
const pointerAt = (event: PointerEvent) => {
  const svg = (event.currentTarget as Element).closest("svg")!;
  const box = svg.getBoundingClientRect();
  const scale = svg.viewBox.baseVal.width / box.width;
  return { x: (event.clientX - box.left) * scale, y: (event.clientY - box.top) * scale };
};

const nearestIndex = (xs: number[], x: number) =>
  xs.reduce((best, each, i) => (Math.abs(each - x) < Math.abs(xs[best]! - x) ? i : best), 0);

interface LineChartProps extends Frame {
  lines: Line[];
  target?: number;
  point?: Point;
  /** Whether the point can be taken along the curve, and what happens then. */
  onDrag?: (to: Point) => void;
  probability: boolean;
}

export function LineChart({ lines, target, point, onDrag, probability, ...frame }: LineChartProps) {
  const { box, width, height, scale } = useSize();
  const [hover, setHover] = useState<number | null>(null);
  const [dragged, setDragged] = useState<Point | null>(null);
  const xs = lines.flatMap((l) => l.xs);
  const ys = lines.flatMap((l) => l.ys).filter((y): y is number => y !== null);
  const x = scaleLinear([Math.min(...xs), Math.max(...xs)], [MARGIN.left, width - MARGIN.right]);
  const y = scaleLinear(
    probability ? [0, 1] : [Math.min(0, ...ys), Math.max(...ys, target ?? 0) * 1.05 || 1],
    [height - MARGIN.bottom, MARGIN.top],
  );
  const own = lines[0]!;
  const drawn = lineThrough<[number, number | null]>()
    .defined(([, value]) => value !== null)
    .x(([at]) => x(at))
    .y(([, value]) => y(value!));
  const onCurve = (at: number): Point | null => {
    const i = nearestIndex(own.xs, at);
    const value = own.ys[i];
    return value === null || value === undefined ? null : { x: own.xs[i]!, y: value };
  };
  const move = (event: PointerEvent) => {
    const at = x.invert(pointerAt(event).x);
    setHover(at);
    if (dragged) setDragged(onCurve(at) ?? dragged);
  };
  const release = () => {
    if (dragged) onDrag?.(dragged);
    setDragged(null);
  };
  const step = (event: KeyboardEvent) => {
    const by = { ArrowRight: 1, ArrowUp: 1, ArrowLeft: -1, ArrowDown: -1, PageUp: 10, PageDown: -10 }[event.key];
    if (!by || !point) return;
    event.preventDefault();
    const i = Math.min(own.xs.length - 1, Math.max(0, nearestIndex(own.xs, point.x) + by));
    const to = onCurve(own.xs[i]!);
    if (to) onDrag?.(to);
  };
  const marked = dragged ?? point;
  const hovered = hover === null ? null : Math.min(x.domain()[1]!, Math.max(x.domain()[0]!, hover));
  const key = lines.length < 2 ? [] : lines.map((l, i) => ({ name: l.name, swatch: <line class={`line line-${i % 6}`} x2={26} /> }));
  const whole = height + keyOf(key, width).height;
  return (
    <div class="chart" ref={box}>
      <svg
        width={width * scale}
        height={whole * scale}
        viewBox={`0 0 ${width} ${whole}`}
        role="group"
        aria-label={frame.description}
        onPointerMove={move}
        onPointerLeave={() => !dragged && setHover(null)}
        onPointerUp={release}
      >
        <rect class="ground" width={width} height={whole} />
        <Axes x={x} y={y} width={width} height={height} frame={frame} />
        {target !== undefined && (
          <g class="target">
            <line x1={MARGIN.left} x2={width - MARGIN.right} y1={y(target)} y2={y(target)} />
            <text x={MARGIN.left + 6} y={y(target) - 5}>{`target ${shown(target)}`}</text>
          </g>
        )}
        {lines.map((l, i) => (
          <path key={i} class={`line line-${i % 6}`} d={drawn(l.xs.map((at, j) => [at, l.ys[j] ?? null])) ?? ""} />
        ))}
        {hovered !== null && (
          <g class="hover" transform={`translate(${x(hovered)} 0)`}>
            <line y1={MARGIN.top} y2={height - MARGIN.bottom} />
            {lines.map((l, i) => {
              const value = l.ys[nearestIndex(l.xs, hovered)];
              return typeof value === "number" && <circle key={i} class={`dot line-${i % 6}`} r={3.5} cy={y(value)} />;
            })}
          </g>
        )}
        {marked && (
          <circle
            class={onDrag ? "point movable" : "point"}
            cx={x(marked.x)}
            cy={y(marked.y)}
            r={7}
            {...(onDrag && {
              tabindex: 0,
              role: "slider",
              "aria-label": frame.xLabel,
              "aria-valuemin": x.domain()[0],
              "aria-valuemax": x.domain()[1],
              "aria-valuenow": marked.x,
              "aria-valuetext": `${frame.xLabel} ${shown(marked.x)}, ${frame.yLabel} ${shown(marked.y)}`,
              onPointerDown: (event: PointerEvent) => {
                (event.currentTarget as Element).setPointerCapture(event.pointerId);
                setDragged(marked);
              },
              onKeyDown: step,
            })}
          />
        )}
        <Key items={key} width={width} top={height} />
      </svg>
      <Reading lines={lines} at={dragged?.x ?? hovered} xLabel={frame.xLabel} yLabel={frame.yLabel} />
    </div>
  );
}

/** The values under the pointer. */
function Reading({ lines, at, xLabel, yLabel }: { lines: Line[]; at: number | null; xLabel: string; yLabel: string }) {
  const i = at === null ? null : nearestIndex(lines[0]!.xs, at);
  const valueAt = (l: Line) => (i === null ? "" : shown(l.ys[i] ?? null) || "none");
  return (
    <p class="reading">
      {i === null && <span class="quiet">Point at the curve to read its values.</span>}
      {i !== null && <span class="at">{`${xLabel} ${shown(lines[0]!.xs[i])}`}</span>}
      {i !== null && lines.map((l, k) => <span key={k}>{lines.length > 1 ? l.name : yLabel} <b>{valueAt(l)}</b></span>)}
    </p>
  );
}

interface ContourChartProps extends Frame {
  xs: number[];
  ys: number[];
  /** Row after row, one for each of ys. */
  zs: (number | null)[];
  zLabel: string;
  target: number | undefined;
  point: Point | undefined;
  probability: boolean;
}

export function ContourChart({ xs, ys, zs, zLabel, target, point, probability, ...frame }: ContourChartProps) {
  const { box, width, height, scale } = useSize();
  const [hover, setHover] = useState<Point | null>(null);
  const x = scaleLinear([xs[0]!, xs.at(-1)!], [MARGIN.left, width - MARGIN.right]);
  const y = scaleLinear([ys[0]!, ys.at(-1)!], [height - MARGIN.bottom, MARGIN.top]);
  const values = zs.map((z) => z ?? NaN);
  const finite = values.filter(Number.isFinite);
  const levels = probability
    ? [0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9]
    : scaleLinear([Math.min(...finite), Math.max(...finite)], [0, 1]).ticks(9);
  const grid = contours().size([xs.length, ys.length]);
  // The grid's own coordinates have cell i's middle at i + 1/2.
  const along = (all: number[], at: number) => {
    const i = Math.min(all.length - 1, Math.max(0, at - 0.5));
    const low = Math.floor(i);
    return all[low]! + (i - low) * ((all[low + 1] ?? all[low]!) - all[low]!);
  };
  const at = ([i, j]: number[]) => `${x(along(xs, i!)).toFixed(1)} ${y(along(ys, j!)).toFixed(1)}`;
  const rings = (level: number) => grid.contour(values, level).coordinates.flat();
  const area = (level: number) => rings(level).map((ring) => "M" + ring.map(at).join("L") + "Z").join("");
  // The line alone: without the stretches where an area ends because the grid does.
  const outside = ([i, j]: number[]) => i! < 0.6 || j! < 0.6 || i! > xs.length - 0.6 || j! > ys.length - 0.6;
  const isoline = (level: number) =>
    rings(level)
      .flatMap((ring) => ring.map((to, k) => (k === 0 || (outside(to) && outside(ring[k - 1]!)) ? "M" : "L") + at(to)))
      .join("");
  const i = hover && nearestIndex(xs, hover.x);
  const j = hover && nearestIndex(ys, hover.y);
  const z = i === null || j === null ? null : zs[j * xs.length + i];
  // A shade is as deep as the areas that lie over one another there.
  const key = levels.map((level, k) => ({
    name: `\u2265 ${shown(level)}`,
    swatch: levels.slice(0, k + 1).map((below) => <rect key={below} class="level" y={-6} width={26} height={12} />),
  }));
  const whole = height + keyOf(key, width).height;
  return (
    <div class="chart" ref={box}>
      <svg
        width={width * scale}
        height={whole * scale}
        viewBox={`0 0 ${width} ${whole}`}
        role="img"
        aria-label={frame.description}
        onPointerMove={(event) => {
          const at = pointerAt(event);
          setHover({ x: x.invert(at.x), y: y.invert(at.y) });
        }}
        onPointerLeave={() => setHover(null)}
      >
        <rect class="ground" width={width} height={whole} />
        {levels.map((level) => (
          <path key={level} class="level" d={area(level)} />
        ))}
        {target !== undefined && <path class="target-level" d={isoline(target)} />}
        <Axes x={x} y={y} width={width} height={height} frame={frame} />
        {point && <circle class="point" cx={x(point.x)} cy={y(point.y)} r={7} />}
        <Key items={key} width={width} top={height} />
      </svg>
      <p class="reading">
        <span class="at">
          {hover && z !== null && z !== undefined
            ? `${frame.xLabel} ${shown(xs[i!])}, ${frame.yLabel} ${shown(ys[j!])}: ${zLabel} ${shown(z)}`
            : ""}
        </span>
      </p>
    </div>
  );
}

const DRAWN = ["fill", "fill-opacity", "stroke", "stroke-width", "stroke-dasharray", "stroke-opacity", "font-size", "font-family", "font-weight"];

/** The picture as a file's text: with its colours, which on the page come from the style sheet. */
export function svgText(chart: SVGSVGElement): string {
  const copy = chart.cloneNode(true) as SVGSVGElement;
  const originals = chart.querySelectorAll("*");
  copy.querySelectorAll("*").forEach((element, i) => {
    const style = getComputedStyle(originals[i]!);
    for (const property of DRAWN) element.setAttribute(property, style.getPropertyValue(property));
    for (const own of ["class", "tabindex", "role"]) element.removeAttribute(own);
  });
  copy.querySelectorAll(".hover").forEach((element) => element.remove());
  copy.setAttribute("xmlns", "http://www.w3.org/2000/svg");
  return new XMLSerializer().serializeToString(copy);
}

/** The picture in pixels, twice as many as on the page. */
export async function pngOf(chart: SVGSVGElement): Promise<Blob> {
  const image = new Image();
  image.src = "data:image/svg+xml;charset=utf-8," + encodeURIComponent(svgText(chart));
  await image.decode();
  const canvas = document.createElement("canvas");
  canvas.width = 2 * chart.width.baseVal.value;
  canvas.height = 2 * chart.height.baseVal.value;
  canvas.getContext("2d")!.drawImage(image, 0, 0, canvas.width, canvas.height);
  return new Promise((resolve, reject) =>
    canvas.toBlob((blob) => (blob ? resolve(blob) : reject(new Error("no picture"))), "image/png"),
  );
}
