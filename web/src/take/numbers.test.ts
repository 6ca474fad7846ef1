import { describe, expect, it } from "vitest";
import { shortest, sixDigits, threeDecimals } from "./numbers";

describe("numbers", () => {
    it.each([
        [0, "0"],
        [-0, "-0"],
        [1000, "1000"],
        [0.1, "0.1"],
        [0.0001, "0.0001"],
        [0.00001, "1e-05"],
        [-0.0000123, "-1.23e-05"],
        [1e-12, "1e-12"],
        [9999999999999998, "9999999999999998"],
        [1e16, "1e+16"],
        [2.5e300, "2.5e+300"],
    ])("%d is written as %s", (value, text) => {
        expect(shortest(value)).toBe(text);
        expect(Number(text)).toBe(value);
    });
    it.each([
        [0.64, "0.64"],
        [1 / 3, "0.333333"],
        [0.5531547, "0.553155"],
        [1, "1"],
        [123456, "123456"],
        [1234567, "1.23457e+06"],
        [0.0001, "0.0001"],
        [0.00012345678, "0.000123457"],
        [0.00001, "1e-05"],
        [999999.7, "1e+06"],
    ])("%d has six digits as %s", (value, text) => {
        expect(sixDigits(value)).toBe(text);
    });
    it.each([
        [1, "1.000"],
        [0.0625, "0.062"],
        [0.1875, "0.188"],
        [-0.0625, "-0.062"],
        [-0.3125, "-0.312"],
        [76.87549999, "76.875"],
        [0.0005, "0.001"], // The double lies a little above.
        [-12.3456, "-12.346"],
    ])("%d has three decimals as %s", (value, text) => {
        expect(threeDecimals(value)).toBe(text);
    });
});
