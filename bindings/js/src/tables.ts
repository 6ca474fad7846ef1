// The tables of a result as objects.
import type { Address, Machine } from "./machine.js";
import type { DirectorEvidence, Frame, Keyframe, Mode, Move, Rect, Slice, Space, Stages, ValueObject, Zone } from "./types.js";

// The numbers of the tables, and the flags of a slice, in the C interface.
const KEYFRAMES = 0;
const ZONES = 1;
const OBJECTS = 2;
const SLICES = 3;
const SLICE_SPACES = 4;
const SHOTS = 5;
const SHOT_SPACES = 6;
const BLANK = 1;
const KEYFRAME = 2;
const BLOCKED = 4;
const IDENTIFIED = 8;
const TIGHT = 16;
const IN_WINDOW = 32;
const WINDOW = 64;
const NO_WINDOW = 128;

const TABLE_SIZE = 12;

type ReadRow<Row> = (view: DataView, at: Address, i: number) => Row;

/** Reads the table that a call fills, row by row. */
function readRows<Row>(machine: Machine, call: string, of: readonly number[], readRow: ReadRow<Row>): Row[] {
  return machine.using((allocate) => {
    const table = allocate(TABLE_SIZE);
    machine.call(call, [...of, table]);
    const view = machine.view();
    const rows = view.getUint32(table, true);
    const count = view.getUint32(table + 4, true);
    const stride = view.getUint32(table + 8, true);
    return Array.from({ length: count }, (_, i) => readRow(view, rows + i * stride, i));
  });
}

/** Reads one table of a result. */
function readTable<Row>(machine: Machine, result: Address, id: number, readRow: ReadRow<Row>): Row[] {
  return readRows(machine, "orvanta_result_table", [result, id], readRow);
}

export function readFrame(view: DataView, at: Address): Frame {
  return {
    left: view.getFloat64(at, true),
    top: view.getFloat64(at + 8, true),
    width: view.getFloat64(at + 16, true),
    height: view.getFloat64(at + 24, true),
    overhangs: view.getInt32(at + 32, true) !== 0,
  };
}

export function readMoves(machine: Machine, path: Address): Move[] {
  return readRows(machine, "orvanta_path_moves", [path], (view, at) => ({
    start: Number(view.getBigInt64(at, true)),
    stop: Number(view.getBigInt64(at + 8, true)),
    startSeconds: view.getFloat64(at + 16, true),
    stopSeconds: view.getFloat64(at + 24, true),
    from: readFrame(view, at + 32),
    to: readFrame(view, at + 72),
    cutShort: view.getInt32(at + 120, true) !== 0,
    keyframe: Number(view.getBigInt64(at + 112, true)),
  }));
}

export function readRect(view: DataView, at: Address): Rect {
  return {
    left: view.getInt32(at, true),
    top: view.getInt32(at + 4, true),
    right: view.getInt32(at + 8, true),
    bottom: view.getInt32(at + 12, true),
  };
}

/** Turns the engines' numbers into words; asks for each once. */
class Names {
  readonly #machine: Machine;
  readonly #call: string;
  readonly #known = new Map<number, string>();

  constructor(machine: Machine, call: string) {
    this.#machine = machine;
    this.#call = call;
  }

  of(number: number): string {
    let name = this.#known.get(number);
    if (name === undefined) {
      name = this.#machine.text(this.#machine.callPlain(this.#call, number));
      this.#known.set(number, name);
    }
    return name;
  }
}

function modeNames(machine: Machine): (number: number) => Mode {
  const names = new Names(machine, "orvanta_mode_name");
  return (number) => (names.of(number) || null) as Mode;
}

export function readKeyframes(machine: Machine, result: Address): Keyframe[] {
  const mode = modeNames(machine);
  return readTable(machine, result, KEYFRAMES, (view, at, i) => {
    const shot = view.getInt32(at + 40, true);
    return {
      time: Number(view.getBigInt64(at, true)),
      seconds: view.getFloat64(at + 24, true),
      rect: readRect(view, at + 8),
      reason: machine.text(machine.callPlain("orvanta_result_reason", result, i)) || null,
      mode: mode(view.getInt32(at + 36, true)),
      shot: shot < 0 ? null : shot,
    };
  });
}

function readSlices(machine: Machine, result: Address, sliceTable: number, spaceTable: number): Slice[] {
  const mode = modeNames(machine);
  const spaces = readTable<Space>(machine, result, spaceTable, (view, at) => ({
    rect: readRect(view, at),
    density: view.getFloat64(at + 16, true),
  }));
  return readTable(machine, result, sliceTable, (view, at) => {
    const first = view.getUint32(at + 56, true);
    const flags = view.getUint32(at + 72, true);
    return {
      start: view.getFloat64(at, true),
      stop: view.getFloat64(at + 8, true),
      span: view.getFloat64(at + 16, true),
      spaces: spaces.slice(first, first + view.getUint32(at + 60, true)),
      blank: (flags & BLANK) !== 0,
      keyframe: (flags & KEYFRAME) !== 0,
      blocked: (flags & BLOCKED) !== 0,
      identified: (flags & IDENTIFIED) !== 0,
      tight: (flags & TIGHT) !== 0,
      inWindow: (flags & IN_WINDOW) !== 0,
      window: (flags & WINDOW) !== 0,
      noWindow: (flags & NO_WINDOW) !== 0,
      windowRect: readRect(view, at + 24),
      hotRect: readRect(view, at + 40),
      mode: mode(view.getInt32(at + 68, true)),
      revision: view.getInt32(at + 64, true),
    };
  });
}

const EVIDENCE_SIZE = 80;

/** What the director's shots are for. */
export function readEvidence(machine: Machine, result: Address, shots: number): DirectorEvidence[] {
  return machine.using((allocate) => {
    const row = allocate(EVIDENCE_SIZE);
    const evidence: DirectorEvidence[] = [];
    for (let shot = 0; shot < shots; ++shot) {
      for (let i = 0; machine.callPlain("orvanta_js_evidence", result, shot, i, row) !== 0; ++i) {
        const view = machine.view();
        const found: DirectorEvidence = {
          keyframe: shot,
          kind: "",
          weight: view.getFloat64(row, true),
          seen: view.getFloat64(row + 8, true),
          count: view.getUint32(row + 64, true),
          rect: readRect(view, row + 32),
          cost: view.getFloat64(row + 16, true),
          runnerUp: view.getInt32(row + 68, true) !== 0 ? readRect(view, row + 48) : null,
          runnerUpCost: view.getFloat64(row + 24, true),
        };
        found.kind = machine.text(machine.callPlain("orvanta_js_evidence_kind", result, shot, i));
        evidence.push(found);
      }
    }
    return evidence;
  });
}

export function readStages(machine: Machine, result: Address): Stages {
  const types = new Names(machine, "orvanta_object_type_name");
  return {
    zones: readTable<Zone>(machine, result, ZONES, (view, at) => ({
      start: view.getFloat64(at, true),
      stop: view.getFloat64(at + 8, true),
      rect: readRect(view, at + 16),
    })),
    objects: readTable<ValueObject>(machine, result, OBJECTS, (view, at) => ({
      type: types.of(view.getInt32(at + 40, true)),
      start: view.getFloat64(at, true),
      stop: view.getFloat64(at + 8, true),
      rect: readRect(view, at + 24),
      value: view.getFloat64(at + 16, true),
    })),
    slices: readSlices(machine, result, SLICES, SLICE_SPACES),
    shots: readSlices(machine, result, SHOTS, SHOT_SPACES),
  };
}
