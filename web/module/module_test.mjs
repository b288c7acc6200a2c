// The module by itself, under node: that it answers as the command-line tool does, to the byte.
//
//   node web/module/module_test.mjs build/wasm/pokermath.wasm build/release/cli/pokermath

import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { readFileSync } from "node:fs";
import test from "node:test";

const [modulePath, program] = process.argv.slice(2);
const compiled = new WebAssembly.Module(readFileSync(modulePath));

class Refused extends Error {
  constructor(text, field) {
    super(text);
    this.field = field;
  }
}

// An instance, and its calls with texts or bytes in and out.
class Host {
  constructor() {
    const refuse = (text, length, field, fieldLength) => {
      throw new Refused(this.textAt(text, length), this.textAt(field, fieldLength));
    };
    const none = () => 0;
    const noEnvironment = (count, size) => {
      new DataView(this.calls.memory.buffer).setUint32(count, 0, true);
      new DataView(this.calls.memory.buffer).setUint32(size, 0, true);
      return 0;
    };
    // The system is not asked for anything else.
    const system = {};
    for (const { module, name } of WebAssembly.Module.imports(compiled)) {
      if (module === "wasi_snapshot_preview1") system[name] = () => assert.fail(name);
    }
    system.environ_get = none;
    system.environ_sizes_get = noEnvironment;
    const imports = { pokermath: { refuse }, wasi_snapshot_preview1: system };
    this.calls = new WebAssembly.Instance(compiled, imports).exports;
    this.calls._initialize();
  }

  bytesAt(place, length) {
    return new Uint8Array(this.calls.memory.buffer, place, length);
  }

  textAt(place, length) {
    return new TextDecoder().decode(this.bytesAt(place, length));
  }

  request(content) {
    const bytes = typeof content === "string" ? new TextEncoder().encode(content) : content;
    this.bytesAt(this.calls.pokermath_request(bytes.length), bytes.length).set(bytes);
  }

  call(name, ...numbers) {
    const stack = this.calls.__stack_pointer.value;
    try {
      const length = this.calls[`pokermath_${name}`](...numbers);
      return this.textAt(this.calls.pokermath_reply(), length);
    } catch (error) {
      this.calls.__stack_pointer.value = stack;
      throw error;
    }
  }

  ask(name, object) {
    this.request(JSON.stringify(object));
    return JSON.parse(this.call(name));
  }

  answer(question) {
    const { steps } = this.ask("open", question);
    for (let done = 0; done < steps && !this.calls.pokermath_enough(done);) {
      const stop = this.calls.pokermath_next_stop(done);
      this.calls.pokermath_do(done, stop);
      done = stop;
    }
    return this.call("answer", 0, 0);
  }
}

// Numbers that are the same in every run.
let state = 1;
function below(limit) {
  state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
  return Math.floor((state / 2 ** 32) * limit);
}
const oneOf = (list) => list[below(list.length)];
const untimed = (json) => json.replace(/"elapsed_ms":[0-9.e-]+/, "");

function randomQuestion() {
  const game = oneOf(["holdem", "holdem", "shortdeck", "omaha", "omaha-hilo", "omaha5"]);
  const ranks = game === "shortdeck" ? "6789TJQKA" : "23456789TJQKA";
  const deck = [...ranks].flatMap((rank) => [..."cdhs"].map((suit) => rank + suit));
  const take = (count) => {
    return Array.from({ length: count }, () => deck.splice(below(deck.length), 1)[0]).join("");
  };
  const holes = { holdem: 2, shortdeck: 2, omaha5: 5 }[game] ?? 4;
  const ranges = holes === 2 ? ["12%", "TT+,AKs:0.5", "random"] : ["10%", "AAxx", "random"];
  if (holes === 5) ranges[1] = "AAxxx";
  const board = take(oneOf([0, 3, 3, 4, 5]));
  const players = [take(holes), below(2) === 0 ? take(holes) : oneOf(ranges)];
  if (below(3) === 0) players.push(take(holes));
  const question = { id: state, game, players, board, seed: below(1000) };
  if (below(4) === 0) question.dead = take(2);
  const wide = players[1] === "random" || (holes > 2 && players.length > 2);
  if (wide || below(3) === 0) Object.assign(question, { method: "sampled", trials: 3000 });
  else if (holes === 2) question.detail = oneOf([["hand", "class"], ["made"], []]);
  return question;
}

test("answers are those of the command-line tool", () => {
  const host = new Host();
  const questions = Array.from({ length: 100 }, randomQuestion);
  const input = questions.map((question) => JSON.stringify(question)).join("\n");
  const { stdout } = spawnSync(program, ["equity", "-"], { input, maxBuffer: 2 ** 28 });
  const lines = stdout.toString().split("\n").slice(0, -1);
  assert.equal(lines.length, questions.length);
  let refused = 0;
  for (const [i, question] of questions.entries()) {
    try {
      assert.equal(untimed(host.answer(question)), untimed(`${lines[i]}\n`));
    } catch (error) {
      if (!(error instanceof Refused)) throw error;
      const { error: text, field = "" } = JSON.parse(lines[i]);
      assert.deepEqual([error.message, error.field], [text, field]);
      ++refused;
    }
  }
  assert.ok(refused < 30, `${refused} questions were refused`);
});

test("documents are those of the command-line tool", () => {
  const host = new Host();
  const words = ["AhKd", "15%", "--board", "2c7dTh"];
  ["hand", "class", "next", "made"].forEach((by, number) => {
    const run = (...more) =>
      spawnSync(program, ["equity", ...words, "--by", by, ...more]).stdout.toString();
    host.answer({ players: ["AhKd", "15%"], board: "2c7dTh", detail: by });
    const untimedText = (text) => text.replace(/, [0-9.]+ m?s\.\n/, "\n");
    assert.equal(untimedText(host.call("text")), untimedText(run()));
    assert.equal(host.call("csv", number), run("--csv", "-"));
    if (by !== "made") assert.equal(host.call("svg", number), run("--svg", "-"));
  });
});

test("sums of parts add up to the whole", () => {
  for (const question of [
    { players: ["15%", "QQ+,AKs:0.3"], board: "2c7d", detail: ["hand", "made"] },
    { players: ["AhKd", "random"], method: "sampled", trials: 100000, seed: 7 },
  ]) {
    const whole = new Host().answer(question);
    const hosts = [new Host(), new Host(), new Host()];
    const { steps } = hosts.map((host) => host.ask("open", question))[0];
    assert.ok(steps >= 3);
    hosts.forEach((host, i) => {
      host.calls.pokermath_do(Math.floor((steps * i) / 3), Math.floor((steps * (i + 1)) / 3));
      if (i === 0) return;
      const length = host.calls.pokermath_take_sums();
      hosts[0].request(host.bytesAt(host.calls.pokermath_reply(), length).slice());
      hosts[0].calls.pokermath_add_sums();
    });
    assert.equal(hosts[0].call("answer", 0, 0), whole);
  }
});

test("errors name what is wrong, and an instance goes on", () => {
  const question = { players: ["AhKd", "7s7c"], board: "2c3d4h" };
  const host = new Host();
  const answer = host.answer(question);
  for (const [wrong, field] of [
    [{ players: ["AhKd"] }, "players"],
    [{ players: ["AhKd", "7s7"] }, "players/1"],
    [{ players: ["AhKd", 7] }, "players/1"],
    [{ players: ["AhKd", "Ah7c"] }, "players/1"],
    [{ folded: ["QQ", "KdKc"] }, "folded/1"],
    [{ folded: ["nobody"] }, "folded/0"],
    [{ board: "2c3x" }, "board"],
    [{ board: "2c3d4h5s6s7d" }, "board"],
    [{ board: "2c3d4h", dead: "2c" }, "board"],
    [{ game: "shortdeck", board: "", dead: "2c" }, "dead"],
    [{ dead: "zz" }, "dead"],
    [{ to: "preflop" }, "to"],
    [{ game: "bridge" }, "game"],
    [{ method: "guess" }, "method"],
    [{ method: "sampled", standard_error: 2 }, "standard_error"],
    [{ trials: 0 }, "trials"],
    [{ time_ms: -1 }, "time_ms"],
    [{ seed: 0.5 }, "seed"],
    [{ detail: ["all"] }, "detail"],
    [{ colour: "red" }, "colour"],
  ]) {
    assert.throws(
      () => host.ask("open", { ...question, ...wrong }),
      (error) => error instanceof Refused && error.message !== "" && error.field === field,
      JSON.stringify(wrong),
    );
    assert.equal(host.call("answer", 0, 0), answer);
  }
  host.request('{"players":[');
  assert.throws(() => host.call("open"), /no JSON object at byte 13/);
});

test("ranges are told and written", () => {
  const host = new Host();
  const text = "TT+,AQs+:0.5";
  const range = host.ask("describe", { game: "holdem", text });
  assert.equal(range.hands, 38);
  assert.equal(range.weights.length, 38);
  assert.deepEqual(
    range.weights.find(([hand]) => hand === "AhKh"),
    ["AhKh", 0.5],
  );
  assert.equal(host.ask("range_text", { game: "holdem", weights: range.weights }).text, text);
  const shapes = host.ask("describe", { game: "omaha", text: "AAxx:ds" });
  assert.deepEqual([shapes.hands, shapes.weights.length, shapes.cut], [864, 500, true]);
  const random = host.ask("describe", { game: "omaha6", text: "random" });
  assert.deepEqual([random.every, random.hands, random.weights], [true, 20358520, []]);
  for (const weights of [
    [["AhKh", 2]],
    [["AhX", 1]],
    [["AhAh", 1]],
    [["AhKhQh", 1]],
    [["2c3d", 1]],
  ]) {
    const wrong = { game: "shortdeck", weights };
    assert.throws(() => host.ask("range_text", wrong), { field: "weights" }, weights[0][0]);
  }
  const wrong = { game: "shortdeck", text: "2c3d" };
  assert.throws(() => host.ask("describe", wrong), { field: "text" });
});
