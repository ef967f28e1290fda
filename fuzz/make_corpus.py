#!/usr/bin/env python3
"""Writes the seed corpora of the harnesses (fuzz/corpus/<harness>/) from the
golden scripts and the hand-picked vectors of the tests, plus a few number
files and settings records built field by field. Small files only: rerun it
after the tests change instead of keeping large seeds.

Usage: fuzz/make_corpus.py   (from anywhere; rewrites fuzz/corpus/)
"""
import hashlib
import pathlib
import re
import shutil
import struct

root = pathlib.Path(__file__).resolve().parent.parent
corpus = root / "fuzz" / "corpus"
MAX_SEED = 4096

STATEMENTS = {"modulus", "recur", "cond", "step", "steps", "hail", "convert",
              "batch", "freq", "read", "write", "list"}


def put(harness, data):
    if isinstance(data, str):
        data = data.encode()
    if not data or len(data) > MAX_SEED:
        return
    folder = corpus / harness
    folder.mkdir(parents=True, exist_ok=True)
    (folder / hashlib.sha1(data).hexdigest()[:16]).write_bytes(data)


def script_lines():
    for script in sorted((root / "tests" / "cli").glob("*.ordix")):
        text = script.read_text()
        put("cli_script", text)
        for line in text.splitlines():
            line = line.strip()
            if line and not line.startswith("#"):
                yield line


def formulas_and_lists():
    for line in script_lines():
        word, _, rest = line.partition(" ")
        word = word.lower()
        if word == "list":
            put("list_command", rest)
        elif word == "convert":
            parts = rest.split()
            if len(parts) >= 3 and all(p.isdigit() for p in parts[:2]):
                f, t = int(parts[0]), int(parts[1])
                if 2 <= f <= 16 and 2 <= t <= 16:
                    put("radix", bytes([(f - 2) + 15 * (t - 2)]) + " ".join(parts[2:]).encode())
        elif word in ("modulus", "cond"):
            if rest and rest != "off":
                put("formula", rest)
        elif word == "recur":
            if "=" in rest:
                put("formula", rest.split("=", 1)[1])
        elif word == "batch":
            put("formula", rest.split(";")[0].strip())
        elif word not in STATEMENTS:
            put("formula", line.split("=", 1)[1].strip() if "=" in line else line)


def vectors():
    # "op operands -> results": the operands are decimal texts and formulas'
    # building blocks.
    ops = {"+": "+", "-": "-", "*": "*", "divmod": "[QUO]", "frac+": "+", "frac*": "*",
           "frac/": "/", "pow": "^", "gcd": "[GCD]", "lcm": "[LCM]", "mod": "[MOD]"}
    text = (root / "tests" / "bigint" / "arith_vectors.txt").read_text()
    for line in text.splitlines():
        line = line.split("->")[0].strip()
        if not line or line.startswith("#"):
            continue
        line = re.sub(r"^M=\S+\s+", "", line)
        op, *operands = line.split()
        operands = [o.replace("~", " ").replace("_", "") for o in operands]
        if op == "read" and operands:
            put("radix", b"\x08" + operands[0].encode())
        if op in ops and len(operands) == 2:
            put("formula", "(%s)%s(%s)" % (operands[0], ops[op], operands[1]))
            for o in operands:
                put("radix", b"\x08" + o.encode())


def limbs(n):
    out = []
    while True:
        out.append(n % 10000)
        n //= 10000
        if n == 0:
            return out


def value(n):
    ls = limbs(abs(n))
    return struct.pack("<iB", len(ls) - 1, 1 if n < 0 else 0) + b"".join(
        struct.pack("<h", l) for l in ls)


def num_file(label, numerator, denominator=None, notebook=b"", version=1):
    header = 100 * version + label
    data = struct.pack("<i", -header if denominator is not None else header) + value(numerator)
    if denominator is not None:
        data += value(denominator)
    data += struct.pack("<h", len(notebook) + 1) + notebook + b"\0"
    if version >= 1:
        font = struct.pack("<5i8B", -16, 0, 0, 0, 400, 0, 0, 0, 0, 3, 2, 1, 0x31)
        font += b"Courier New".ljust(32, b"\0")
        data += font + struct.pack("<I", 0xDEADBEEF)
    return data


def number_files():
    put("num_file", num_file(1, 0))
    put("num_file", num_file(3, -12345678, 7, b"hi"))
    put("num_file", num_file(26, 2**200, None, b"two to the 200"))
    put("num_file", num_file(2, 10**40 + 1, -3, b"", version=0))
    put("num_file", num_file(5, 9999, 10000, b"x" * 300))


def settings():
    for rec in [(0, 0, 0, 0, 0, 0, 1), (100, 80, 640, 480, 0, 1, 0),
                (-5, 10, 2**31 - 1, 72, 1, 0, 1), (2**31 - 200, 0, 300, 300, 0, 0, 0)]:
        put("settings", struct.pack("<4i3B", *rec))
    put("settings", b"short")


if __name__ == "__main__":
    if corpus.exists():
        shutil.rmtree(corpus)
    formulas_and_lists()
    vectors()
    number_files()
    settings()
    for folder in sorted(corpus.iterdir()):
        print(folder.name, len(list(folder.iterdir())))
