#!/usr/bin/env python3
"""Holds docs/schema/ and docs/formats.md against what the tool really prints and reads.

Every page that the table below makes has to be what its schema says, and a page in which something
is changed at random must not be. At the end every schema was used, and whatever a schema names was
in some page, so that schemas name nothing that is not there. Questions go both ways: the tool reads
what their schema accepts, and refuses what it refuses.

    validate_schemas.py TOOL
"""

import collections
import copy
import json
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import time

from jsonschema import Draft202012Validator, RefResolver, validators

TOOL = os.path.abspath(sys.argv[1])
ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = ROOT / "docs/schema"
SCHEMAS = {path.stem: json.loads(path.read_text()) for path in FOLDER.glob("*.json")}
FORMATS = (ROOT / "docs/formats.md").read_text()
RANDOM = random.Random(20240229)
RANKS, SUITS = "23456789TJQKA", "cdhs"
MOST_REPORTS = 20

# What may be missing in a page; whatever else is taken out, the schema has to notice.
OPTIONAL = {
    "equity": "id folded interrupted elapsed_ms next players/*/hands_detail players/*/classes "
    "players/*/made",
    "bulk-answer": "id folded field next players/*/classes",
    "error": "id field",
    "history-line": "game unfinished",
    "tables": "tables/*/built",
    "doctor": "dir_error system/* processor/*",
    "db-query": "row/*",
    "outs": "by_category/*",
    "range-omaha": "suits/* types/*",
}

# What no page of this test has, and why.
SELDOM = {
    "db-columns/properties/columns/items/properties/schema": "SQLite has one schema",
    "doctor/properties/drivers_error": "a driver manager that does not answer",
}

failures = []


def fail(text):
    failures.append(text)
    if len(failures) <= MOST_REPORTS:
        print("FAILED:", text[:2000])


# --- schemas ---

CHECKS = Draft202012Validator.VALIDATORS
seen = set()  # places of properties and of values in enumerations, as (id of the list, which)


def note_properties(validator, properties, instance, schema):
    if isinstance(instance, dict):
        seen.update((id(properties), name) for name in properties if name in instance)
    yield from CHECKS["properties"](validator, properties, instance, schema)


def note_enum(validator, values, instance, schema):
    seen.add((id(values), json.dumps(instance)))
    yield from CHECKS["enum"](validator, values, instance, schema)


Noting = validators.extend(
    Draft202012Validator, {"properties": note_properties, "enum": note_enum}
)
FILES = {schema["$id"]: schema for schema in SCHEMAS.values()}


def validator_of(name, kind):
    schema = SCHEMAS[name]
    return kind(schema, resolver=RefResolver(schema["$id"], schema, store=FILES))


NOTING = {name: validator_of(name, Noting) for name in SCHEMAS}
PLAIN = {name: validator_of(name, Draft202012Validator) for name in SCHEMAS}


def target_of(schema, node):
    file, _, path = node["$ref"].partition("#")
    for key in path.split("/")[1:]:
        schema = (FILES[file] if file else schema)[key]
        file = ""
    return schema


def walk(schema, visit, rule=False):
    """Calls visit(schema, whether it is part of a rule like `if`) for it and all inside."""
    if isinstance(schema, list):
        for one in schema:
            walk(one, visit, rule)
    if not isinstance(schema, dict):
        return
    visit(schema, rule)
    for key in ("properties", "$defs"):
        for one in schema.get(key, {}).values():
            walk(one, visit, rule)
    for key in ("items", "additionalProperties", "propertyNames", "anyOf", "oneOf"):
        walk(schema.get(key), visit, rule)
    for key in ("allOf", "if", "then", "else", "not"):
        walk(schema.get(key), visit, True)


def check_schemas():
    for name, schema in SCHEMAS.items():
        Draft202012Validator.check_schema(schema)
        if schema["$id"] != name + ".json" or not schema["title"] or not schema["description"]:
            fail(f"{name}: $id, title or description")
        if name != "common" and f"(schema/{name}.json)" not in FORMATS:
            fail(f"docs/formats.md does not say what schema/{name}.json is for")

        def visit(node, rule):
            for key, one in node.get("properties", {}).items():
                if rule:
                    continue
                told = {**target_of(schema, one), **one} if "$ref" in one else one
                if "description" not in told:
                    fail(f"{name}: {key} has no description")
            closed = "additionalProperties" in node or "else" in node or rule
            if node.get("type") == "object" and not closed:
                fail(f"{name}: an object takes any key: {json.dumps(node)[:80]}")

        walk(schema, visit)


def check_all_seen(used):
    for name in set(SCHEMAS) - used - {"common"}:
        fail(f"no page is held against {name}.json")
    seldom = {id(at(SCHEMAS, place.split("/"))) for place in SELDOM}
    for name, schema in SCHEMAS.items():

        def visit(node, rule):
            for key, one in node.get("properties", {}).items():
                met = (id(node["properties"]), key) in seen
                if one is not False and met == (id(one) in seldom):
                    fail(f"{name}: {key} is in {'a' if met else 'no'} page")
            for value in node.get("enum", []):
                if (id(node["enum"]), json.dumps(value)) not in seen:
                    fail(f"{name}: no page has the value {value} of {node['enum']}")

        walk(schema, visit)


# --- pages ---

used = set()
closely = collections.Counter()


def items_of(page):
    if isinstance(page, dict):
        return page.items()
    return enumerate(page) if isinstance(page, list) else ()


def places_in(page, place=()):
    """Every place in a page but those inside an id, by its place without numbers."""
    found = {}
    for key, value in items_of(page):
        here = (*place, key)
        if here == ("id",):
            continue
        kind = tuple("*" if isinstance(part, int) else part for part in here)
        found.setdefault(kind, []).append(here)
        for kind, places in places_in(value, here).items():
            found.setdefault(kind, []).extend(places)
    return found


def at(page, place):
    for key in place:
        page = page[key]
    return page


def changed(page, place, change):
    page = copy.deepcopy(page)
    change(at(page, place[:-1]), place[-1])
    return page


def is_optional(name, kind):
    generic = ["/".join(kind), "/".join((*kind[:-1], "*"))]
    return any(one in OPTIONAL.get(name, "").split() for one in generic)


OTHER_TYPE = {str: 12345, int: "1", float: "1", bool: "x", list: {}, dict: [], type(None): True}


def faults_at(name, value, kind):
    """What can be wrong at a place: words, and a function that makes it so."""
    if kind[-1] != "*" and not is_optional(name, kind):
        yield "without", lambda inside, key: inside.pop(key)
    if isinstance(value, dict):
        yield "with a new key in", lambda inside, key: inside[key].update(x=[None])
    yield "with a list as", lambda inside, key: inside.__setitem__(key, [[None]])
    if kind[0] != "row":
        other = OTHER_TYPE[type(value)]
        yield f"with {other!r} as", lambda inside, key: inside.__setitem__(key, other)


def check_refuses(name, page):
    """A page with a key too few or too many, or a value of another type: at every kind of place in
    the first short pages of a schema, at three places of every other page."""
    places = places_in(page)
    whole = len(json.dumps(page)) < 6000 and closely[name] < 5
    closely[name] += whole
    for kind in places if whole else RANDOM.choices(list(places), k=3):
        place = RANDOM.choice(places[kind])
        faults = list(faults_at(name, at(page, place), kind))
        for what, change in faults if whole else [RANDOM.choice(faults)]:
            if PLAIN[name].is_valid(changed(page, place, change)):
                where = "/".join(map(str, place))
                fail(f"{name}.json accepts a page {what} {where}: {json.dumps(page)[:400]}")
    if PLAIN[name].is_valid({**page, "unknown": 1}) or PLAIN[name].is_valid([page]):
        fail(f"{name}.json accepts an unknown key, or a list")


def check_page(name, page, asked):
    used.add(name)
    for error in list(NOTING[name].iter_errors(page))[:3]:
        place = "/".join(map(str, error.absolute_path))
        fail(f"{asked}: {name}.json, {place}: {error.message[:300]}")
    check_refuses(name, page)


def run(*words, code=0, given=None):
    ended = subprocess.run([TOOL, *words], input=given, capture_output=True, text=True)
    if ended.returncode != code:
        fail(f"pokermath {' '.join(words)}: exit code {ended.returncode}: {ended.stderr[:300]}")
    return ended.stdout


def check(name, *words, **how):
    """The pages of a command, one a line, each after its schema; gives them back."""
    pages = [json.loads(line) for line in run(*words, "--json", **how).splitlines()]
    if not pages:
        fail(f"pokermath {' '.join(words)}: nothing is printed")
    for page in pages:
        check_page("error" if "error" in page else name, page, " ".join(words))
    return pages


# --- questions ---

STRUCTURAL = re.compile(
    "^the value of |is not a key of a question|is not known:|is not accepted: |players are needed|"
    "is not a card:|[0-9] players?: expected"
)


def deal(count, deck):
    return ["".join(deck.pop()) for _ in range(count)]


def ranges_of(game):
    if game.startswith("omaha"):
        x = "x" * (int(game[5]) - 4 if game[5:6].isdigit() else 0)
        return ["AAxx" + x, "KKQx" + x + ":ds", "JTxx" + x, "random"]
    return ["AA,KK:0.5", "AKs,QJo:0.25", "TT-99,T9s", "A9s+", "random"]


def random_question():
    game = RANDOM.choice(SCHEMAS["common"]["$defs"]["game"]["enum"])
    two_cards = not game.startswith("omaha")
    size = 2 if two_cards else int(game[5]) if game[5:6].isdigit() else 4
    low = "6" if game.startswith("shortdeck") else "2"
    deck = [rank + suit for rank in RANKS[RANKS.index(low) :] for suit in SUITS]
    RANDOM.shuffle(deck)
    board = deal(RANDOM.choice([3, 4, 5]), deck)
    count = RANDOM.choice([2, 2, 2, 3, 4])
    players = [deal(size, deck) for _ in range(count)]
    question = {"game": game, "players": players, "board": board}
    narrow = True
    if RANDOM.random() < 0.5:
        text = RANDOM.choice(ranges_of(game))
        players[RANDOM.randrange(count)] = text
        narrow = text != "random"
        if not two_cards or count > 2:
            question.update(method="sampled", trials=RANDOM.choice([1, 2, 50, 300]))
    if RANDOM.random() < 0.5:
        question["players"] = ["".join(player) for player in players]
        question["board"] = " ".join(board).lower().replace("t", "10")
    extras = {
        "id": RANDOM.choice([1, "a", None, {"flop": "x", "alike": [1, None]}, [], 0.5, True]),
        "dead": deal(2, deck) if RANDOM.random() < 0.5 else "".join(deal(1, deck)),
        "seed": RANDOM.choice([0, 7, 2**64 - 1]),
        "folded": [deal(size, deck) for _ in range(RANDOM.choice([1, 2]))],
        "method": question.get("method", RANDOM.choice(["auto", "exact", "sampled"])),
        "trials": question.get("trials", RANDOM.choice([1, 10, 200])),
        "standard_error": RANDOM.choice([0.25, 1, 1e-2]),
        "time_ms": RANDOM.choice([1, 3]),
        "to": "river" if len(board) == 5 else RANDOM.choice(["turn", "river"]),
    }
    question.update((key, extras[key]) for key in extras if RANDOM.random() < 0.3)
    if question.get("method") == "sampled":
        question.setdefault("trials", 100)
    small = narrow and (two_cards or all(isinstance(player, list) for player in players))
    details = ["made"] + ["next"] * (len(board) < (4 if question.get("to") == "turn" else 5))
    details += ["hand", "class"] * small
    question["detail"] = RANDOM.sample(details, RANDOM.randrange(len(details) + 1))
    if len(question["detail"]) == 1 and RANDOM.random() < 0.5:
        question["detail"] = question["detail"][0]
    return question


NUMBERS = [5, -1, 0, 2.5, 10**12 + 1, 10**19]
ANYTHING = [*NUMBERS, None, True, "", "x", "Ah", "AhKd", [], [5], ["x"], {}, [[]], [None]]


def spoiled_question():
    """Quick to answer whatever is changed."""
    question = {"players": ["AhKd", "7s7c"], "board": "2c3d4h", "trials": 20}
    extras = {"id": 3, "game": "holdem", "folded": ["QsQd"], "dead": ["5d"], "to": "turn"}
    extras |= {"method": "sampled", "standard_error": 0.1, "time_ms": 2, "detail": "made"}
    question.update((key, extras[key]) for key in extras if RANDOM.random() < 0.3)
    way = RANDOM.randrange(6)
    if way == 0:
        unknown = RANDOM.choice(["Players", "detail ", "x", "boards", "low"])
        question[unknown] = RANDOM.choice(ANYTHING)
    elif way == 1:
        question["players"][RANDOM.randrange(2)] = RANDOM.choice(ANYTHING)
    elif way == 2:
        del question["players"]
    else:
        key = RANDOM.choice(list(SCHEMAS["question"]["properties"]))
        question[key] = RANDOM.choice(ANYTHING)
    return question


def check_questions():
    """Each answer after its schema, and the schema of questions against the tool's own reader."""
    questions = [random_question() for _ in range(200)] + [spoiled_question() for _ in range(350)]
    lines = "".join(json.dumps(question) + "\n" for question in questions)
    answers = check("equity", "equity", "-", given=lines, code=1)
    answered = accepted = 0
    for question, answer in zip(questions, answers, strict=True):
        used.add("question")
        is_accepted = NOTING["question"].is_valid(question)
        answered += "error" not in answer
        accepted += is_accepted
        structural = "error" in answer and STRUCTURAL.search(answer["error"])
        both = f"{json.dumps(question)}: {json.dumps(answer)[:300]}"
        if is_accepted and structural:
            fail(f"question.json accepts what the tool does not, {both}")
        if not is_accepted and "field" not in answer:
            fail(f"question.json refuses what the tool does not, {both}")
        if "error" not in answer and "elapsed_ms" not in answer:
            fail(f"an answer has no elapsed_ms, {both}")
    numbers = {"answered": answered, "accepted": accepted, "refused": len(questions) - accepted}
    for what, number in numbers.items():
        if number < 150:
            fail(f"only {number} of {len(questions)} questions are {what}")


# --- commands ---


def check_equity():
    low = "Ah2h3c4d AsAdKsQd --game omaha-hilo --board 5c7dTh"
    for detail in ("hand", "class", "next", "made"):
        check("equity", "equity", *"AhKd QQ+,AKs:0.5 --board 2c7dTh --by".split(), detail)
        check("equity", "equity", *low.split(), "--by", detail)
    weighted = "QQ:0.98,JJ:0.6304,TT:0.1066,AKs:0.4 55:0.45,44:0.976,33:0.96,32o:0.479,53s:0.47"
    for words in (
        "AhKd 7s7c --board 2c --dead 3c --folded AsQs --to flop --by next",
        "AhKd 7s7c --to flop --by next",
        "AhKd QcJs --game shortdeck-straights",
        "AhAdKhKd JTxx:ds --game omaha --board AsKs7c --by class",
        "AhKd" + " random" * 9 + " --trials 500 --by made",
        "AA,KK AcAs --board 2c3d4h5s9c --dead Ad --by hand",
        "AhKd 7s7c --trials 1 --sampled",
        # Rounded, these would be more than a whole pot.
        weighted + " --board AsAhAd2c --by class",
        "K7o:0.3993,74s:0.0338,A9o:0.9704 55:0.9189,A8o,22:0.9347,92:0.6444 J5:0.6649,TT:0.4897 "
        "--board 2cKdTc --by made",
    ):
        check("equity", "equity", *words.split())
    check("eval", "eval", "-", given="AhKhQhJhTh2c3d\nx\nAhKh\n", code=1)
    # Stopped before the end; earlier than it can be stopped, it has no answer.
    for wait in (0.5, 2, 8):
        words = ["equity", *["random"] * 6, "--trials", "1000000000000", "--json"]
        endless = subprocess.Popen([TOOL, *words], stdout=subprocess.PIPE)
        time.sleep(wait)
        endless.terminate()
        out = endless.communicate()[0]
        if out:
            break
    check_page("equity", json.loads(out), "equity, interrupted")


def check_hands():
    by_category = "7h5d4c3s2h AhAd5c4d3s AhAd5c5d3s AhAdAc5d3s 6h5d4c3s2h 7h5h4h3h2h AhAdAc5d5s "
    by_category += "AhAdAcAs5s 6h5h4h3h2h AhKhQhJhTh AhKhQhJhTh2c3d"
    check("eval", "eval", "-", given=by_category.replace(" ", "\n"))
    short = "Ah6h7h8h9h\nAhKd9c8s7hTd\nAhAdAc6s7d\n"
    check("eval-shortdeck", "eval", "-", "--game", "shortdeck", given=short)
    for game, hand in (("omaha", "AhKhQsJs"), ("omaha5", "AhKhQsJs2d"), ("omaha6", "AhKhQsJs2d3d")):
        check("eval-omaha", "eval", hand, "--board", "Th9h2h", "--game", game)
        check("nuts", "nuts", hand, "Th9h2hTd")
        check("outs", "outs", hand, "9hTc2s")
        check("low", "low", hand, "4h5c8s")
    for words in ("--board 2c7dTh", "", "--board 6c7dTh9s --game shortdeck"):
        check("eval-versus", "eval", "AhKd", "--versus", "QcJs", *words.split())
    check("eval-versus", "eval", "QcJs", "--versus", "AhKd")
    check("eval-versus", "eval", "QcJs", "--versus", "QdJh")
    improving = "AsKsQsJs Ts9s2d3c, AhAdJcTc QhKd2s, 7h6h5c4c 8d3h2h, AdKd9c8c Td7d2d, "
    improving += "AcKc9c8c Tc7c2d, AdAcKhKs AhKd2c, AdAcKhKs Ah2c2d, 5d5c4h4s 5h5s4c"
    for hand in improving.split(", "):
        check("outs", "outs", *hand.split())
        check("nuts", "nuts", *hand.split())
    lows = "Ah2dKsQc 3c7dKh9c, AhKdKsQc 3c7d8h9c2c, Ah2dKsQc KcJdTh, Ah2dKsQc 3c7d8h9c2c, "
    lows += "Ah2dKsQc Ac2c8h, Ah2dKsQc 3c7d8h, Ah2d3s4c5d6h 3c7d8hKsKc"
    for hand in lows.split(", "):
        check("low", "low", *hand.split())
    check("points", "points", "AhAdKhKd", "AhKhQsJs", "2c7dJh9s")
    check("points", "points", "Ah2h3dKd", "AhAdKhKd", "6c7d8h9s", "--hilo")


def check_ranges():
    ranges = ["TT+,A9s+,KJo+", "15% --table corvelle", "30% --game shortdeck", "AhKd AA", "random"]
    for words in ranges:
        check("range", "range", *words.split())
    check("range-rank", "range", "--rank", "76o", "--game", "shortdeck")
    for hand in "AA AKs KQo 88 QTs J9s JTo 55 A2s K9s 65s 54s 33 KTo QTo 72o".split():
        check("range-rank", "range", "--rank", hand)
        check("range-rank", "range", "--rank", hand, "--table", "corvelle")
    for game, text in (("omaha", "10%:ds"), ("omaha5", "AAKKx!AAAxx"), ("omaha6", "AsKsQhJhTc9c")):
        check("range-omaha", "range", "--game", game, text, "--dead", "Ah7c")
    check("range-omaha", "range", "--game", "omaha", "AsAhxx!AAxx")
    check("range-omaha-rank", "range", "--game", "omaha", "--rank", "AsKsQhJh")
    check("range-omaha-rank", "range", "--game", "omaha5", "--rank", "AsKsQhJh9c")
    check("pots", "pots", "--stakes", "100,50,100,7", "--scores", "5,9,7,0")
    check("pots", "pots", "--stakes", "30,30,31", "--scores", "8,8,-1")


def check_databases():
    connect = ("--connect", "Driver=SQLite3;Database=hands.db")
    script = """
        CREATE TABLE hands (id integer NOT NULL, name varchar(20), won double, day date, seen blob);
        INSERT INTO hands VALUES (5000000000, 'a"€', 0.1, '2024-02-29', x'00ff');
        INSERT INTO hands (id) VALUES (1)"""
    check("db-exec", "db", "exec", "-", *connect, given=script)
    check("db-drivers", "db", "drivers")
    check("db-tables", "db", "tables", *connect)
    check("db-columns", "db", "columns", "hands", *connect)
    check("db-query", "db", "query", "SELECT *, id FROM hands", *connect)
    names = ["Hold'em No Limit", "Omaha Pot Limit", "5 Card Omaha Pot Limit"]
    names += ["5 Card Omaha Hi/Lo Pot Limit", "Courchevel Pot Limit", "no game"]
    text = "".join(f"Hand: {name}\n" for name in names) + "unfinished"
    pathlib.Path("hands.txt").write_text(text)
    lines = run("history", "hands.txt", "--json").splitlines()
    for line in lines[:-1]:
        check_page("history-line", json.loads(line), "history")
    check_page("history-position", json.loads(lines[-1]), "history")


def check_files():
    os.mkdir("tables")
    folder = ("--dir", "tables")
    check("tables", "tables", "build", "six-plus-5", *folder)
    check("tables", "tables", "list", *folder)
    check("tables", "tables", "verify", "six-plus-5", *folder)
    check("doctor", "doctor", *folder)
    os.truncate("tables/six-plus-5.bin", 5)
    check("doctor", "doctor", *folder, code=1)
    os.mkdir("tables/six-plus-7.bin")
    check("tables", "tables", "verify", "six-plus-5", "six-plus-7", *folder, code=1)
    check("tables", "tables", "build", "six-plus-7", *folder, code=1)
    check("doctor", "doctor", "--dir", "hands.txt", code=1)


def write_lines(path, objects):
    pathlib.Path(path).write_text("".join(json.dumps(one) + "\n" for one in objects))


def check_answers(folder):
    for line in pathlib.Path(folder, "answers.jsonl").read_text().splitlines():
        check_page("bulk-answer", json.loads(line), folder + "/answers.jsonl")


def await_status(folder, key):
    words = [TOOL, "bulk", "status", folder, "--json"]
    for _ in range(150):
        # Before the job has begun there is none.
        status = subprocess.run(words, capture_output=True, text=True).stdout
        if status and json.loads(status)[key]:
            return check_page("bulk-status", json.loads(status), "bulk status")
        time.sleep(0.2)
    fail(f"bulk status never has {key}: {status}")


def check_bulk():
    questions = [{"id": i, "players": ["AhKd", "QQ+"], "board": "2c7dTh"} for i in range(9)]
    questions[1].update(folded=["AsQs"], detail=["class", "next"])
    questions += [{"players": ["AhKd"]}]
    questions += [{"id": "s", "players": ["AhKd", "random"], "method": "sampled", "trials": 9}]
    write_lines("questions.jsonl", questions)
    check("bulk", "bulk", "questions.jsonl", "--out", "whole", code=1)
    check_answers("whole")
    check("bulk-verify", "bulk", "verify", "whole")
    check("bulk-shard", "bulk", "questions.jsonl", "--out", "parts", "--shard", "2/2", code=1)
    check("bulk-status", "bulk", "status", "parts")
    check("bulk", "bulk", *"flop-report AhAd KhKd --sampled --trials 2 --out flops".split())
    for line in pathlib.Path("flops/questions.jsonl").read_text().splitlines()[:20]:
        used.add("question")
        if not NOTING["question"].is_valid(json.loads(line)):
            fail(f"question.json refuses a question of flop-report: {line}")
    # One that takes until it is stopped.
    endless = {"players": ["random"] * 9, "method": "sampled", "trials": 10**12}
    write_lines("endless.jsonl", [endless, questions[0]])
    words = [TOOL, "bulk", "endless.jsonl", "--out", "endless", "--shard", "1/2", "--threads", "1"]
    process = subprocess.Popen(words, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        await_status("endless", "running")
    finally:
        process.terminate()
    if process.wait() != 75:
        fail(f"a stopped shard ends with exit code {process.returncode}")
    await_status("endless", "stopped")


def check_csv():
    """The columns of every CSV are a line of docs/formats.md, and each column has a row there."""
    told = set(re.findall(r"^    (player,\S+)$", FORMATS, re.MULTILINE))
    printed = set()
    questions = ["AhKd 7s7c --board 2c7dTh"]
    questions += ["Ah2h3c4d AsAdKsQd --board 5c7dTh --game omaha-hilo"]
    for detail in ("hand", "class", "next", "made"):
        for question in questions:
            csv = run("equity", *question.split(), "--by", detail, "--csv", "-")
            printed.add(csv.splitlines()[0])
    if told != printed:
        fail(f"docs/formats.md has the columns {sorted(told)}, printed are {sorted(printed)}")
    for column in {column for line in printed for column in line.split(",")}:
        if f"| `{column}` |" not in FORMATS:
            fail(f"docs/formats.md does not say what the column {column} is")


def main():
    with tempfile.TemporaryDirectory() as folder:
        os.environ.update(HOME=folder)
        os.chdir(folder)
        check_schemas()
        parts = [check_equity, check_questions, check_hands, check_ranges]
        parts += [check_databases, check_files, check_bulk, check_csv]
        for part in parts:
            start = time.monotonic()
            part()
            print(f"{part.__name__[6:]}: {time.monotonic() - start:.1f} s")
        check_all_seen(used)
    if failures:
        sys.exit(f"{len(failures)} failures")


main()
