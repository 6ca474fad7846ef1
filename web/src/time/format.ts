// Times as people read them.

/** "1:05.250", "1:02:03.5": as many decimals as asked for. */
export function timeText(seconds: number, decimals = 3): string {
    const factor = 10 ** decimals;
    // Rounded first, so that 59.9996 becomes 1:00.000 and not 0:60.000.
    const total = Math.round(Math.abs(seconds) * factor);
    const whole = Math.floor(total / factor);
    const hours = Math.floor(whole / 3600);
    const minutes = Math.floor(whole / 60) % 60;
    const rest = whole % 60;
    const sign = seconds < 0 && total > 0 ? "\u2212" : "";
    const fraction = decimals > 0 ? `.${String(total % factor).padStart(decimals, "0")}` : "";
    const tail = `${String(rest).padStart(2, "0")}${fraction}`;
    return hours > 0 ? `${sign}${hours}:${String(minutes).padStart(2, "0")}:${tail}` : `${sign}${minutes}:${tail}`;
}

/** "0.4 s", "14 s", "3 min 20 s", "2 h 5 min" */
export function lengthText(seconds: number): string {
    if (seconds < 9.95) return `${seconds.toFixed(1)} s`;
    const whole = Math.round(seconds);
    if (whole < 60) return `${whole} s`;
    if (whole < 3600) return whole % 60 === 0 ? `${whole / 60} min` : `${Math.floor(whole / 60)} min ${whole % 60} s`;
    const minutes = Math.round(seconds / 60);
    return minutes % 60 === 0 ? `${minutes / 60} h` : `${Math.floor(minutes / 60)} h ${minutes % 60} min`;
}

/** Seconds of "90.5", "1:30.5", "1:02:03"; null for anything else. */
export function parseTime(text: string): number | null {
    const parts = text.trim().split(":");
    if (parts.length > 3 || parts.some((part) => !/^\d+(\.\d+)?$/.test(part))) return null;
    if (parts.slice(0, -1).some((part) => part.includes("."))) return null;
    const numbers = parts.map(Number);
    if (numbers.slice(1).some((value) => value >= 60)) return null;
    return numbers.reduce((sum, value) => sum * 60 + value, 0);
}
