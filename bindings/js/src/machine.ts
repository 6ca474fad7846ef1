// The engines' WebAssembly: its memory, and calls into it.
import wasmBytes from "./orvanta.wasm";
import { ErrorCode, OrvantaError, parameterName } from "./error.js";

/** An address in the engines' memory. */
export type Address = number;

type Call = (...args: (number | bigint)[]) => number;
interface Exports {
  memory: WebAssembly.Memory;
  malloc(size: number): Address;
  free(address: Address): void;
  [name: string]: unknown;
}

/** Callbacks of the plan that is being made. */
export interface Listener {
  onProgress?: ((percent: number) => void) | undefined;
  isCancelled?: (() => boolean) | undefined;
}

// The error record of the C interface.
const ERROR_SIZE = 296;
const ERROR_MESSAGE = 40;
const ERROR_MESSAGE_SIZE = 256;

let compiled: Promise<WebAssembly.Module> | undefined;

/** Compiles the engines once for the whole program. */
export function compile(): Promise<WebAssembly.Module> {
  compiled ??= WebAssembly.compile(wasmBytes);
  return compiled;
}

/** One instance of the engines. */
export class Machine {
  readonly #module: WebAssembly.Module;
  #exports: Exports;
  #error: Address;
  #listener: Listener = {};
  #thrown: { reason: unknown } | undefined;

  constructor(module: WebAssembly.Module) {
    this.#module = module;
    [this.#exports, this.#error] = this.#start();
  }

  get memory(): ArrayBuffer {
    return this.#exports.memory.buffer;
  }

  view(): DataView {
    return new DataView(this.memory);
  }

  allocate(size: number): Address {
    const address = this.#exports.malloc(Math.max(size, 1)) >>> 0;
    if (address === 0) {
      throw new OrvantaError("memory ran out", ErrorCode.noMemory);
    }
    return address;
  }

  free(address: Address): void {
    this.#exports.free(address);
  }

  /** Runs `work` with memory that is freed when it ends. */
  using<T>(work: (allocate: (size: number) => Address) => T): T {
    const taken: Address[] = [];
    try {
      return work((size) => {
        const address = this.allocate(size);
        taken.push(address);
        return address;
      });
    } finally {
      for (const address of taken) {
        this.free(address);
      }
    }
  }

  /** Calls a function of the C interface that returns nothing or text. */
  callPlain(name: string, ...args: (number | bigint)[]): number {
    return (this.#exports[name] as Call)(...args);
  }

  /** Calls a function that takes an error record last; a code that `accepted` lacks is thrown. Returns the code. */
  call(name: string, args: (number | bigint)[], accepted: readonly number[] = [0]): number {
    this.view().setUint32(this.#error, ERROR_SIZE, true);
    let code: number;
    try {
      code = (this.#exports[name] as Call)(...args, this.#error);
    } catch (failure) {
      // The instance stopped in the middle of something: its memory is worth nothing now.
      [this.#exports, this.#error] = this.#start();
      throw new OrvantaError(`the engine stopped: ${String(failure)}`, ErrorCode.internal);
    }
    if (!accepted.includes(code)) {
      throw this.#readError();
    }
    return code;
  }

  /** Calls with callbacks. What a callback throws ends the call and is thrown here. */
  listen<T>(listener: Listener, work: () => T): T {
    const before: [Listener, { reason: unknown } | undefined] = [this.#listener, this.#thrown];
    this.#listener = listener;
    this.#thrown = undefined;
    try {
      return work();
    } catch (failure) {
      const thrown = this.#thrown as { reason: unknown } | undefined;
      throw thrown === undefined ? failure : thrown.reason;
    } finally {
      [this.#listener, this.#thrown] = before;
    }
  }

  text(address: Address, limit = Infinity): string {
    const bytes = new Uint8Array(this.memory);
    let end = address;
    while (end < address + limit && bytes[end] !== 0) {
      ++end;
    }
    return new TextDecoder().decode(bytes.subarray(address, end));
  }

  #readError(): OrvantaError {
    const view = this.view();
    const at = this.#error;
    return new OrvantaError(
      this.text(at + ERROR_MESSAGE, ERROR_MESSAGE_SIZE),
      view.getInt32(at + 4, true),
      parameterName(view.getInt32(at + 8, true)),
      view.getFloat64(at + 16, true),
      view.getFloat64(at + 24, true),
      Number(view.getBigInt64(at + 32, true)),
    );
  }

  // A callback that throws must not unwind the engine's frames: it asks to stop, and its reason is thrown afterwards.
  #hear<T>(callback: () => T, otherwise: T): T {
    if (this.#thrown !== undefined) {
      return otherwise;
    }
    try {
      return callback();
    } catch (reason) {
      this.#thrown = { reason };
      return otherwise;
    }
  }

  #start(): [Exports, Address] {
    const memory = (): DataView => new DataView(exports.memory.buffer);
    const imports = {
      orvanta: {
        progress: (percent: number): void => {
          this.#hear(() => this.#listener.onProgress?.(percent), undefined);
        },
        cancelled: (): number =>
          this.#thrown !== undefined || this.#hear(() => this.#listener.isCancelled?.() === true, true) ? 1 : 0,
      },
      env: { emscripten_notify_memory_growth: (): void => {} },
      // The standard library's streams are linked in, but nothing of the engines writes to them through this module.
      wasi_snapshot_preview1: {
        proc_exit: (status: number): never => {
          throw new Error(`exit status ${status}`);
        },
        fd_write: (_file: number, parts: Address, count: number, written: Address): number => {
          const view = memory();
          let total = 0;
          for (let i = 0; i < count; ++i) {
            total += view.getUint32(parts + 8 * i + 4, true);
          }
          view.setUint32(written, total, true);
          return 0;
        },
        fd_read: (): number => 8, // no such file
        fd_close: (): number => 0,
        fd_seek: (): number => 8,
        environ_sizes_get: (count: Address, size: Address): number => {
          memory().setUint32(count, 0, true);
          memory().setUint32(size, 0, true);
          return 0;
        },
        environ_get: (): number => 0,
      },
    };
    const exports = new WebAssembly.Instance(this.#module, imports).exports as unknown as Exports;
    (exports._initialize as () => void)();
    return [exports, exports.malloc(ERROR_SIZE)];
  }
}
