#!/usr/bin/env python3
"""A library exports the classes and free functions of a list, all of them and nothing else, and a program that
includes the umbrella header can use each.

usage: check_exports.py NM COMPILER INCLUDE_FOLDER LIBRARY_FILE LIST CLASS_LIST

CLASS_LIST is the header with the classes that archives name. The list has the rest: a line `class NAME` or
`function SIGNATURE` for each, in the words of `nm -DC`. A class exports its members, its tables and its type
information; a template is listed by its instances.
"""

import pathlib
import re
import subprocess
import sys
import tempfile


ALIASES = {
    "ipBool": "bool",
    "ipInt8": "signed char",
    "ipUInt8": "unsigned char",
    "ipInt16": "short",
    "ipUInt16": "unsigned short",
    "ipInt32": "int",
    "ipUInt32": "unsigned int",
    "ipInt64": "long",
    "ipUInt64": "unsigned long",
    "ipReal32": "float",
    "ipReal64": "double",
    "std::string": "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >",
}


def listed_classes(header):
    """Return the names of a class list in the words of nm."""
    names = re.findall(r'\{"(orvel::[^"]+)", \d+\}', pathlib.Path(header).read_text(encoding="utf-8"))
    if not names:
        sys.exit(f"{header} lists no class")

    def spelt(argument):
        name = argument[1].removeprefix("orvel::")
        return f"<{ALIASES.get(name, name)}>".replace(">>", "> >")

    return [re.sub("<(.*)>", spelt, name) for name in names]


def outside_brackets(text, wanted):
    """Return the places of the wanted characters that stand in no template argument and no parentheses."""
    places, depth = [], 0
    text = re.sub(r"operator(<<|>>|<=|>=|<|>|\(\))", lambda found: "operator" + "_" * len(found[1]), text)
    for place, character in enumerate(text):
        if character in wanted and depth == 0:
            places.append(place)
        depth += {"<": 1, "(": 1, ">": -1, ")": -1}.get(character, 0)
    return places


def entry_of(symbol, classes):
    """Return the line of the list that an exported symbol belongs to."""
    about_type = re.match(r"(?:typeinfo name|typeinfo|vtable|VTT) for (.*)", symbol)
    name = about_type[1] if about_type else re.sub(r"^(non-)?virtual thunk to ", "", symbol)
    parameters = outside_brackets(name, "(")
    qualified = name[: parameters[0]] if parameters else name
    # What belongs to a type within a class belongs to the class.
    for colon in outside_brackets(qualified, ":") + [len(qualified)]:
        if qualified[:colon] in classes:
            return "class " + qualified[:colon]
    return ("class " if about_type else "function ") + name


def exported_symbols(nm, library):
    lines = subprocess.run([nm, "-DC", "--defined-only", library], check=True, capture_output=True, text=True)
    symbols = {line.split(" ", 2)[2].replace("[abi:cxx11]", "") for line in lines.stdout.splitlines()}
    if len(symbols) < 5:
        sys.exit(f"{library} exports {len(symbols)} symbols only: was the list read right?")
    return symbols


def split_parameters(signature):
    start = outside_brackets(signature, "(")[0]
    inner = signature[start + 1 : signature.rindex(")")]
    commas = [-1] + outside_brackets(inner, ",") + [len(inner)]
    return signature[:start], [inner[a + 1 : b].strip() for a, b in zip(commas, commas[1:]) if inner]


def user_of(header, entries):
    """Return a program that uses every entry. Type information of the companions' errors is emitted here, too."""
    lines = [f"#include <{header}>", "#include <ORVELUtil/ORVELUtil.h>", "#include <typeinfo>", "#include <utility>"]
    for number, entry in enumerate(entries):
        kind, name = entry.split(" ", 1)
        if kind == "class":
            lines.append(f"const std::type_info& class{number}() {{ return typeid({name}); }}")
            continue
        function, parameters = split_parameters(name)
        declared = ", ".join(f"{type_} p{index}" for index, type_ in enumerate(parameters))
        given = ", ".join(f"p{index}" for index in range(len(parameters)))
        lines.append(f"void function{number}({declared}) {{ static_cast<void>({function}({given})); }}")
    return "\n".join(lines) + "\n"


def main():
    nm, compiler, include, library, list_file, class_list = sys.argv[1:]
    entries = pathlib.Path(list_file).read_text(encoding="utf-8").splitlines()
    if sorted(set(entries)) != entries:
        sys.exit(f"{list_file} is not sorted, or names something twice")
    own_classes = {f"class {name}" for name in listed_classes(class_list)}
    if own_classes & set(entries):
        sys.exit(f"{list_file} repeats what {class_list} lists: {sorted(own_classes & set(entries))}")
    entries = sorted(own_classes | set(entries))
    classes = {entry.removeprefix("class ") for entry in entries if entry.startswith("class ")}
    found = {entry_of(symbol, classes) for symbol in exported_symbols(nm, library)}
    failures = [f"exported, but not in the list: {entry}" for entry in sorted(found - set(entries))]
    failures += [f"in the list, but not exported: {entry}" for entry in sorted(set(entries) - found)]
    if failures:
        sys.exit("\n".join(failures))

    name = pathlib.Path(list_file).stem
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder, "user.cpp")
        source.write_text(user_of(f"{name}/{name}.h", entries), encoding="utf-8")
        libraries = pathlib.Path(library).parent
        subprocess.run(
            [compiler, "-std=c++17", "-fPIC", "-shared", "-Wl,-z,defs", "-I", include, str(source)]
            + ["-o", str(pathlib.Path(folder, "user.so")), library, f"-Wl,-rpath-link,{libraries}", "-L", str(libraries)]
            + ["-lORVELSerialization", "-lORVELUtil", "-lboost_filesystem"],
            check=True,
        )
    print(f"{len(entries)} classes and functions")


if __name__ == "__main__":
    main()
