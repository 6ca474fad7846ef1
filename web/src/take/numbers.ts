// Numbers as the command writes them.

/** The shortest text that reads back the same; beyond 10^16 and below 10^-4 with an exponent of two digits or more. */
export function shortest(value: number): string {
    if (Object.is(value, -0)) return "-0";
    const size = Math.abs(value);
    if (size === 0 || (size >= 1e-4 && size < 1e16)) return String(value);
    return withExponent(value.toExponential());
}

/** Six significant digits, without zeros at the end. */
export function sixDigits(value: number): string {
    if (value === 0) return "0";
    const [digits = "", exponent = "0"] = value.toExponential(5).split("e");
    const power = Number(exponent);
    if (power < -4 || power >= 6) return withExponent(`${String(Number(digits))}e${exponent}`);
    return String(Number(`${digits}e${exponent}`));
}

/** "1e-7" as "1e-07". */
function withExponent(text: string): string {
    return text.replace(/e([+-])(\d)$/, "e$10$2");
}

/** Three decimals. What lies half way between two goes to the even one. */
export function threeDecimals(value: number): string {
    const text = value.toFixed(3);
    const halfWay = /^(-?\d+\.\d\d(\d))50*$/.exec(value.toFixed(30));
    const [, below, last] = halfWay ?? [];
    return below !== undefined && Number(last) % 2 === 0 ? below : text;
}
