// Draws the latest seconds of a trace: a lane for each object, for commands, frames and the programs' log.
const Seconds = 10;
const Lane = 16;
const Names = 200;

/** `trace`: {"traceEvents": [...]} in the format of Chrome, times in microseconds. */
export function drawTimeline(canvas, trace) {
  const names = new Map();
  for (const event of trace.traceEvents) if (event.ph === 'M' && event.name === 'thread_name') names.set(`${event.pid} ${event.tid}`, event.args.name);
  const events = trace.traceEvents.filter((event) => event.ph !== 'M');
  const end = Math.max(0, ...events.map((event) => event.ts + (event.dur ?? 0)));
  const begin = end - Seconds * 1e6;
  const recent = events.filter((event) => event.ts + (event.dur ?? 0) >= begin);
  const lanes = [...new Set(recent.map((event) => `${event.pid} ${event.tid}`))].sort((a, b) => (names.get(a) ?? a).localeCompare(names.get(b) ?? b));
  canvas.height = Math.max(lanes.length, 1) * Lane;
  const context = canvas.getContext('2d');
  const style = getComputedStyle(canvas);
  context.font = `11px ${style.fontFamily}`;
  context.fillStyle = style.color;
  lanes.forEach((lane, row) => context.fillText(names.get(lane) ?? lane, 0, row * Lane + Lane - 4, Names - 8));
  const scale = (canvas.width - Names) / (Seconds * 1e6);
  for (const event of recent) {
    const row = lanes.indexOf(`${event.pid} ${event.tid}`);
    const from = Math.max(event.ts, begin);
    const width = Math.max(2, (event.ts + (event.dur ?? 0) - from) * scale);
    context.fillRect(Names + (from - begin) * scale, row * Lane + 2, width, Lane - 4);
  }
  canvas.dataset.lanes = lanes.map((lane) => names.get(lane) ?? lane).join('\n');
}
