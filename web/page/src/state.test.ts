import { describe, expect, it } from "vitest";
import { readHash, writeHash, type View } from "./hash.js";
import { OPENING, begin, cardsInUse, change, placeIn, questionOf, redo, undo } from "./state.js";
import { withGame, type Query } from "./state.js";

describe("history", () => {
  const typed = (text: string): Query => ({ ...OPENING, players: ["AhKd", text] });

  it("takes letters typed one after the other as one step", () => {
    let history = begin(OPENING);
    history = change(history, typed("Q"), "players/1", 1000);
    history = change(history, typed("QQ"), "players/1", 1200);
    history = change(history, typed("QQ+"), "players/1", 9000);
    expect(history.past.length).toBe(2);
    history = undo(history);
    expect(history.present.players[1]).toBe("QQ");
    history = undo(history);
    expect(history.present).toEqual(OPENING);
    expect(undo(history)).toBe(history);
    history = redo(redo(history));
    expect(history.present.players[1]).toBe("QQ+");
    expect(redo(history)).toBe(history);
  });

  it("takes a stroke of the pointer as one step, however long it rests", () => {
    let history = change(begin(OPENING), typed("AA"), "stroke 1", 1000);
    history = change(history, typed("KK+"), "stroke 1", 9000);
    expect(undo(history).present).toEqual(OPENING);
    history = change(history, typed("QQ+"), "stroke 2", 9100);
    expect(undo(history).present.players[1]).toBe("KK+");
  });

  it("forgets what was undone at the next change, and no change is no step", () => {
    let history = change(begin(OPENING), typed("AA"), "", 0);
    history = change(undo(history), typed("KK"), "", 1);
    expect(history.future).toEqual([]);
    expect(change(history, typed("KK"), "", 2)).toBe(history);
  });
});

describe("the answer of before", () => {
  it("stays with the players who stay", () => {
    const asked = questionOf({ ...OPENING, players: ["AA", "KK", "AA"] }, []);
    const places = (query: Query) => query.players.map((_, at) => placeIn(asked, query, at));
    expect(places({ ...OPENING, players: ["AA", "x", "QQ"] })).toEqual([0, 1, 2]);
    expect(places({ ...OPENING, players: ["KK", "AA"] })).toEqual([1, 0]);
    expect(places({ ...OPENING, players: ["x", "KK", "AA", "QQ"] })).toEqual([-1, 1, 2, -1]);
    expect(places({ ...OPENING, game: "shortdeck", players: ["AA", "KK"] })).toEqual([-1, -1]);
  });
});

describe("another game", () => {
  it("begins hands anew only where they have another number of cards", () => {
    const board = { ...OPENING, board: "2c7dTh" };
    const short = withGame(board, "shortdeck");
    expect(short.players).toEqual(OPENING.players);
    expect(short.board).toBe("7dTh");
    const omaha = withGame({ ...board, players: ["AA", "KK", "QQ"] }, "omaha");
    expect(omaha.players.length).toBe(3);
    expect(omaha.players[2]).toBe("random");
    expect(omaha.board).toBe("2c7dTh");
    expect(withGame({ ...board, board: "oops" }, "shortdeck").board).toBe("oops");
  });

  it("knows the cards in sight", () => {
    expect([...cardsInUse({ ...OPENING, dead: "3s" })].sort()).toEqual(
      ["2c", "3s", "7d", "Ah", "Kd", "Th"].sort(),
    );
  });
});

describe("the address", () => {
  const view: View = { tab: "next", player: 1 };

  it("brings back every question, whatever was typed", () => {
    const odd: Query = {
      game: "omaha-hilo",
      players: ["AAxx:ds!AAAx@50", "[25.0]AAxx,KK&=#[/25.0]", "10%,ü", ""],
      folded: ["5%-20%"],
      board: "A♥ K♦",
      dead: "2c",
      to: "turn",
      method: "sampled",
      standardError: 0.001,
      timeMs: 500,
    };
    for (const query of [odd, OPENING]) {
      expect(readHash(writeHash(query, view))).toEqual({ query, view });
    }
  });

  it("stays readable", () => {
    expect(writeHash({ ...OPENING, players: ["AhKd", "TT+,AQs:0.5"] }, view)).toBe(
      "#p=AhKd&p=TT+,AQs:0.5&board=2c7dTh&view=next&of=2",
    );
  });

  it("makes something of what others wrote", () => {
    expect(readHash("")).toBeNull();
    expect(readHash("#p=AA")).toBeNull();
    const read = readHash("#p=AA&p=15%&game=chess&to=showdown&of=7&view=x&ms=-1");
    expect(read?.query).toEqual({ ...OPENING, players: ["AA", "15%"], board: "" });
    expect(read?.view).toEqual({ tab: "range", player: 0 });
  });
});
