// What goes into the engines, and what comes out.

/** Whole numbers, such as an Int32Array or an array of numbers. */
export type Integers = ArrayLike<number>;
/** Ticks of a recording's clock, in ascending order: whole numbers, or 64-bit ones. */
export type Ticks = ArrayLike<number> | BigInt64Array;

/** Rectangles, each from a moment on. */
export interface TimedRects {
  times: Ticks;
  /** Four numbers for each moment: left, top, right, bottom in screen pixels, right and bottom one past the last. */
  rects: Integers;
}

/** Positions of the cursor. */
export interface CursorSamples {
  times: Ticks;
  /** Two numbers for each moment: x and y in screen pixels. */
  points: Integers;
}

/** Events of the cursor's buttons and wheel. */
export interface ActionSamples {
  times: Ticks;
  /** One number for each moment: 0, 2, 4 press of left, right, middle; 1, 3, 5 its release; 6, 7 a wheel step up, down. */
  codes: Integers;
}

/** What a recorder knows of a recording besides the picture. Every stream but the regions may be missing. */
export interface Recording {
  /** Ticks per second of every time in the recording. */
  timeScale: number;
  /** Whether the platform does not report menus as windows; false unless told. */
  windowsFlag?: boolean;
  /** The part of the screen that was recorded, from each moment on; at least one. The first is the recording's frame. */
  regions: TimedRects;
  /** The window in front; all zero where there is none. */
  windows?: TimedRects;
  /** Rectangles of the screen that changed. */
  dirtyRects?: TimedRects;
  /** Rectangles of the text caret. */
  carets?: TimedRects;
  cursor?: CursorSamples;
  actions?: ActionSamples;
  /** Ticks: where the recording ends. The last moment of its streams unless told. */
  stop?: number;
}

/** Which engine answers: the one that understands what happened, the small and quick one, or the one that searches. */
export type EngineName = "value" | "voting" | "director";

/** What is asked of a recording. */
export interface Options {
  /** Size of the output frame, pixels; each side at least 64, and at least one smaller than the recording's. */
  width: number;
  height: number;
  /** "value" unless told. */
  engine?: EngineName;
  /** Seconds that the move to a keyframe takes; 1 unless told. */
  fade?: number;
  /** The stretch to work on, seconds: from and to. The whole recording unless told. The voting engine does not read it. */
  clip?: readonly [number, number];
  /** For the director: seconds of better sight that a move must earn; 1 unless told, 0.25 is lively, 3 very calm. */
  calm?: number;
  /** For the director: the zoom from which text counts as readable; 0.75 unless told. */
  readable?: number;
  /** For the director: whether a press may be left out where showing it costs much; "always" in the picture unless told. */
  presses?: "always" | "cheap";
  /** For the director: whether frames may be larger than the recording in one dimension; false unless told. */
  overhang?: boolean;
}

/** How to carry out a plan. */
export interface PlanOptions extends Options {
  /** Also give the stages of the value engine. */
  stages?: boolean;
  /** Hears how far the work is, 0 to 100. */
  onProgress?: (percent: number) => void;
  /** Asked often; true ends the plan with an OrvantaError of code 8. */
  isCancelled?: () => boolean;
}

/** A rectangle in local pixels: (0, 0) is the top left of the first recording region. */
export interface Rect {
  left: number;
  top: number;
  /** One past the last column. */
  right: number;
  /** One past the last row. */
  bottom: number;
}

/** How a shot is framed, and so why its keyframe is there; null where there is no shot. */
export type Mode = "tight" | "wide" | "loose" | "forced" | "off-window" | "full screen" | null;

/** From its time on, the picture moves to `rect`; the move takes the fade. */
export interface Keyframe {
  /** Ticks. */
  time: number;
  seconds: number;
  rect: Rect;
  /** Why the keyframe is there: its mode, or in words where the director was asked for `stages`; null without either. */
  reason: string | null;
  /** How its shot is framed. */
  mode: Mode;
  /** Index of its shot in the stages; null where there is none. */
  shot: number | null;
}

/** A stretch during which one part of the screen was recorded. */
export interface Zone {
  /** Seconds. */
  start: number;
  stop: number;
  /** Screen pixels. */
  rect: Rect;
}

/** A rectangle that mattered for a while. */
export interface ValueObject {
  /** Such as "Click". */
  type: string;
  /** Seconds. */
  start: number;
  stop: number;
  /** Pixels relative to its zone. */
  rect: Rect;
  /** Scratch of the engine: worth over the interval that was looked at last, value-seconds. */
  value: number;
}

/** A rectangle of a slice, and its value for each pixel. */
export interface Space {
  rect: Rect;
  density: number;
}

/** A stretch of the timeline with one focus. */
export interface Slice {
  /** Seconds. */
  start: number;
  stop: number;
  /** Seconds that the spaces sum up. */
  span: number;
  /** The rectangles that deserve attention, the highest value first. */
  spaces: Space[];
  /** Nothing to show here. */
  blank: boolean;
  /** Merging had to respect its start. */
  keyframe: boolean;
  /** The transition to the next one is fixed. */
  blocked: boolean;
  /** It was classified; the fields below mean something. */
  identified: boolean;
  /** The hot rectangle fits a close shot. */
  tight: boolean;
  /** The hot rectangle lies in the window. */
  inWindow: boolean;
  /** It has one window throughout. */
  window: boolean;
  /** The whole recording changed. */
  noWindow: boolean;
  windowRect: Rect;
  /** Where most of the value lies. */
  hotRect: Rect;
  mode: Mode;
  /** How often it took another in; -1 where it was merged into an earlier one. */
  revision: number;
}

/** What the value engine saw, stage by stage. */
export interface Stages {
  zones: Zone[];
  objects: ValueObject[];
  /** The timeline cut by where the value lies. */
  slices: Slice[];
  /** The same slices, by the same numbers, after merging: those with a revision of 0 or more are shots. */
  shots: Slice[];
}

/** What the output frame shows at a moment, local pixels, fractions included; exactly of the output frame's shape. */
export interface Frame {
  left: number;
  top: number;
  width: number;
  height: number;
  /** Wider or higher than the recording; it then stands out evenly on both sides. */
  overhangs: boolean;
}

/** One move of the camera: what leads to one keyframe's frame. */
export interface Move {
  /** Ticks: when the camera sets off. A keyframe before the clip's start counts as standing at it. */
  start: number;
  /** Ticks: when the move is over, or when the next one takes over. */
  stop: number;
  /** `start` and `stop` in seconds. */
  startSeconds: number;
  stopSeconds: number;
  /** On show at `start`, or until then with a fade of 0. */
  from: Frame;
  /** Where the move leads; on show from `stop` on unless it is cut short. */
  to: Frame;
  /** The next move begins before this one is over, from where the camera is then. */
  cutShort: boolean;
  /** Index of its keyframe in the list that the path was made from. */
  keyframe: number;
}

/** How a move spreads over its time: a preset, or the two control points of a cubic Bézier as in CSS. */
export type Easing =
  | "linear"
  | "ease-in-out"
  | "ease-out"
  | "smooth"
  | readonly [x1: number, y1: number, x2: number, y2: number];

/** One kind of evidence that a shot of the director was made for. */
export interface DirectorEvidence {
  /** Index of the shot's keyframe. */
  keyframe: number;
  /** "press", "drag", "typing", "change", "small window", "page" and so on. */
  kind: string;
  /** Seconds of a viewer's interest during the shot. */
  weight: number;
  /** The share of them that the frame shows, 0 to 1. */
  seen: number;
  /** Pieces of evidence. */
  count: number;
  /** The box around all of it. */
  rect: Rect;
  /** Of the whole shot: seconds of missed sight, the moves at both ends included. */
  cost: number;
  /** The best other frame for the shot's time; null where there is none. */
  runnerUp: Rect | null;
  /** What the shot would have cost with it. */
  runnerUpCost: number;
}

/** What a plan came to. Plain data: it may be sent between threads. */
export interface Plan {
  /** By time. Empty where nothing is worth a move: the whole recording then stays on show. */
  keyframes: Keyframe[];
  /** There when `stages` was asked for; empty for the other engines. */
  stages?: Stages;
  /** What the shots are for, by shot and then by weight; there when `stages` was asked of the director. */
  evidence?: DirectorEvidence[];
}
