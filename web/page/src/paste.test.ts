import { describe, expect, it } from "vitest";
import { tidyPiece, tidyRange } from "./paste.js";

describe("pasted ranges", () => {
  it.each([
    ["TT+,AQs+:0.5", "TT+,AQs+:0.5"],
    ["AA: 0.5, KK : 1", "AA:0.5,KK:1"],
    ["AA:0.5\r\nKK\nQQ:0.25\n", "AA:0.5,KK,QQ:0.25"],
    ["\u201cTT\u2013 88\u201d", "TT-88"],
    ["[50]AA, KK[/50]", "[50]AA,KK[/50]"],
    ["AA@50; KK @ 25", "AA@50;KK@25"],
    ["0.4(AsKs, QQ),JJ", "AsKs:0.4,QQ:0.4,JJ"],
    ["15\u00a0%", "15%"],
    ["AAxx:ds!AAAx@50", "AAxx:ds!AAAx@50"],
    ["AA KK", "AA KK"],
    ["AA(0.5), 99 (0.25),22(50%)", "AA:0.5,99:0.25,22@50"],
    ["0.5(99)", "99:0.5"],
    ["AA:50%,KK @ 2.5 %", "AA@50,KK@2.5"],
    ["AA=0.5;KK = 1", "AA:0.5;KK:1"],
    ["AA\t0.5\nTT-88\t1\nAKs", "AA:0.5,TT-88:1,AKs"],
    ["AA\tKK\t15%", "AA,KK,15%"],
    ["15%@10,16%-50%@5", "15%@10,16%-50%@5"],
  ])("%j becomes %j", (pasted, tidy) => {
    expect(tidyRange(pasted)).toBe(tidy);
  });

  it.each([
    ["AA", ",KK", "", "AA,KK"],
    ["AA,", "QQ,", "KK", "AA,QQ,KK"],
    ["AA, ", ", QQ ,", " ,KK", "AA, QQ ,KK"],
    ["", "\nAA\nKK\n", "", "AA,KK"],
    ["AA", "\nKK\n", "QQ", "AA,KK,QQ"],
    ["A", "K", "s", "AKs"],
  ])("%j takes %j before %j", (before, pasted, after, all) => {
    expect(before + tidyPiece(before, pasted, after) + after).toBe(all);
  });
});
