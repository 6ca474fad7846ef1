// Why a call failed.

/** What an error is about, by the number that the engine gives. */
const PARAMETERS = [
  null,
  "width",
  "height",
  "timeScale",
  "fade",
  "clip",
  "engine",
  "regions",
  "windows",
  "dirtyRects",
  "carets",
  "cursor",
  "actions",
  "struct_size",
  "stride",
  "pointer",
  "table",
  "easing",
  "keyframes",
  "times",
  "calm",
  "readable",
  "presses",
] as const;

/** The codes of an OrvantaError. */
export const ErrorCode = {
  badTargetSize: 1,
  targetTooLarge: 2,
  badTimeScale: 3,
  badRegion: 4,
  noLiveZones: 5,
  mergeFailed: 6,
  cancelled: 8,
  badArgument: 64,
  notSorted: 65,
  noAnswer: 66,
  noMemory: 67,
  internal: 68,
} as const;

/** Every failure of the engines and of what is handed to them. The message is one sentence that says what is wrong. */
export class OrvantaError extends Error {
  override readonly name = "OrvantaError";
  /** One of ErrorCode. */
  readonly code: number;
  /** What the error is about, such as "width" or "cursor"; null where it is about nothing single. */
  readonly parameter: string | null;
  /** What was given, and the bound that it missed, where these are numbers. */
  readonly value: number;
  readonly limit: number;
  /** The sample or row at fault, from 0; -1 where there is none. */
  readonly index: number;

  constructor(message: string, code: number, parameter: string | null = null, value = 0, limit = 0, index = -1) {
    super(message);
    this.code = code;
    this.parameter = parameter;
    this.value = value;
    this.limit = limit;
    this.index = index;
  }
}

export function parameterName(number: number): string | null {
  return PARAMETERS[number] ?? null;
}

export function badArgument(message: string, parameter: string, index = -1): OrvantaError {
  return new OrvantaError(message, ErrorCode.badArgument, parameter, 0, 0, index);
}
