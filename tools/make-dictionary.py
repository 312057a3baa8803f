#!/usr/bin/env python3
"""Generates data/vellum-dictionary.txt from the reference dictionary tables.

The reference tables (groups.tsv, elements.tsv) hold the facts of the SMPTE metadata
dictionary: set keys, parents, element labels, local tags, types and required status. This
tool turns them into the meta-dictionary file that the library embeds, working out the XML
mapping (tag name, prefix, namespace and schema index) of every set and element.

Developers run it by hand when the reference tables change; the build never runs it, and the
generated file is checked in.

    tools/make-dictionary.py REFERENCE_DIR [-o data/vellum-dictionary.txt]

Python 3 standard library only. The file format is described in docs/dictionary-format.md.
"""

import argparse
import csv
import os
import re
import sys

FORMAT_VERSION = 1

RP210 = ("rp210", "http://www.smpte-ra.org/rp210")

# The XML prefix and namespace of each defining standard, as the groups table names it.
# The first part of a multi-part standard keeps the plain number (ST 377-1 -> s377m); later
# parts keep their part number (ST 377-4 -> s377-4m). Groups that AAF defines but MXF files
# carry inside the ST 377-1 class tree (Filler, TaggedValue, KLVData) and the keyless
# generation construct take the ST 377-1 namespace. Descriptive schemes use their own short
# name.
STANDARD_NAMESPACES = {
    "ST 377-1": ("s377m", "urn:SMPTE:S377M"),
    "ST 377-1 (2011 Amd 1 / 2019)": ("s377m", "urn:SMPTE:S377M"),
    "AAF (register); used by MXF writers": ("s377m", "urn:SMPTE:S377M"),
    "AAF (register); used by MXF writers (e.g. package UserComments 4406)": (
        "s377m", "urn:SMPTE:S377M"),
    "AAF (register)": ("s377m", "urn:SMPTE:S377M"),
    "none (MXFLib 2006 / asdcplib / MediaInfo construct)": ("s377m", "urn:SMPTE:S377M"),
    "AAF / ST 377-2 (register)": ("s377-2m", "urn:SMPTE:S377-2M"),
    "ST 377-4": ("s377-4m", "urn:SMPTE:S377-4M"),
    "ST 379-2": ("s379-2m", "urn:SMPTE:S379-2M"),
    "ST 381-1": ("s381m", "urn:SMPTE:S381M"),
    "ST 381-3": ("s381-3m", "urn:SMPTE:S381-3M"),
    "ST 382": ("s382m", "urn:SMPTE:S382M"),
    "ST 422": ("s422m", "urn:SMPTE:S422M"),
    "ST 429-5": ("s429-5m", "urn:SMPTE:S429-5M"),
    "ST 436": ("s436m", "urn:SMPTE:S436M"),
    "ST 380 (DMS-1)": ("dms1", "urn:SMPTE:DMS1"),
}

# The identity elements, named by RP 210 whatever set they appear in.
IDENTITY_ELEMENTS = {"InstanceUID", "GenerationUID"}

REQUIRED = {
    "required": "required",
    "optional": "optional",
    "best effort": "best-effort",
    "decoder required": "decoder-required",
    "encoder required": "encoder-required",
}

# elements.tsv kind -> (collection, reference). Weak references whose value is a plain UUID
# name the target by its own ID property; the loader calls those "global".
KINDS = {
    "single": ("none", "none"),
    "array": ("array", "none"),
    "batch": ("batch", "none"),
    "strong ref": ("none", "strong"),
    "strong ref array": ("array", "strong"),
    "strong ref batch": ("batch", "strong"),
    "weak ref": ("none", "weak"),
    "weak ref batch": ("batch", "weak"),
}

NAME_PATTERN = re.compile(r"[A-Za-z_][A-Za-z0-9_.-]*\Z")
LABEL_PATTERN = re.compile(r"([0-9A-F]{2}\.){15}[0-9A-F]{2}\Z")
TAG_PATTERN = re.compile(r"[0-9A-F]{4}\Z")

SET_COLUMNS = ["key", "name", "parent", "abstract", "structural", "xml-prefix",
               "xml-namespace", "xml-tag"]
ELEMENT_COLUMNS = ["set", "ul", "name", "local-tag", "type", "collection", "reference",
                   "target", "required", "order", "schema-index", "xml-prefix",
                   "xml-namespace", "xml-tag"]


class Fault(Exception):
    """A fact in the reference tables that the tool cannot turn into a definition."""


def read_table(path):
    with open(path, newline="", encoding="utf-8") as handle:
        rows = list(csv.DictReader(handle, delimiter="\t"))
    for number, row in enumerate(rows, start=2):
        row["_line"] = f"{os.path.basename(path)}:{number}"
    return rows


def read_type_identifiers(header_path):
    """Type name -> identifier number, from the enumeration in Identifiers.h."""
    identifiers = {}
    with open(header_path, encoding="utf-8") as handle:
        for match in re.finditer(r"^\s*(\w+)\s*=\s*(\d+)\s*,", handle.read(), re.MULTILINE):
            identifiers[match.group(1)] = int(match.group(2))
    if not identifiers:
        raise Fault(f"{header_path}: no type identifiers found")
    return identifiers


def check(condition, row, message):
    if not condition:
        raise Fault(f"{row['_line']}: {message}")


def namespace_of(group, row):
    standard = group["standard"]
    check(standard in STANDARD_NAMESPACES, row, f"no XML namespace for standard '{standard}'")
    return STANDARD_NAMESPACES[standard]


def build_groups(group_rows):
    groups = {}
    for row in group_rows:
        name = row["name"]
        check(NAME_PATTERN.match(name), row, f"set name '{name}' is not an XML name")
        check(name not in groups, row, f"set '{name}' is listed twice")
        parent = row["parent"]
        check(not parent or parent in groups, row,
              f"parent '{parent}' of '{name}' is not listed before it")
        key = row["key"]
        check(key == "" or LABEL_PATTERN.match(key), row, f"bad key '{key}'")
        check(key != "" or row["is_abstract"] == "yes", row, f"concrete set '{name}' has no key")
        check(row["is_abstract"] in ("yes", "no"), row, "is_abstract is not yes/no")
        check(row["structural"] in ("yes", "no"), row, "structural is not yes/no")
        is_pack = row["klv_syntax"].startswith("fixed pack")
        check(key == "" or key.split(".")[5] == ("05" if is_pack else "53"), row,
              f"key byte 6 of '{name}' does not match its KLV syntax")
        depth = groups[parent]["depth"] + 1 if parent else 0
        groups[name] = dict(row, depth=depth, pack=is_pack, elements=[])
    return groups


def build_elements(element_rows, groups, identifiers):
    for row in element_rows:
        check(row["group"] in groups, row, f"unknown group '{row['group']}'")
        group = groups[row["group"]]
        check(LABEL_PATTERN.match(row["ul"]), row, f"bad UL '{row['ul']}'")
        check(row["local_tag"] == "" or TAG_PATTERN.match(row["local_tag"]), row,
              f"bad local tag '{row['local_tag']}'")
        check(NAME_PATTERN.match(row["mxf_name"]), row, f"'{row['mxf_name']}' is no XML name")
        check(row["kind"] in KINDS, row, f"unknown kind '{row['kind']}'")
        check(row["required"] in REQUIRED, row, f"unknown required status '{row['required']}'")
        number, _, type_name = row["value_type"].partition(" ")
        check(identifiers.get(type_name) == int(number), row,
              f"value type '{row['value_type']}' is not a type identifier")
        collection, reference = KINDS[row["kind"]]
        if reference == "weak" and type_name == "UUID":
            reference = "global"
        target = "-"
        if reference != "none":
            target = row["item_type"]
            check(target in groups, row, f"reference target '{target}' is not a group")
        order = int(row["order"])
        check(1 <= order <= 99, row, f"order {order} is outside 1..99")
        if row["mxf_name"] in IDENTITY_ELEMENTS:
            prefix, namespace = RP210
        else:
            prefix, namespace = namespace_of(group, row)
        group["elements"].append({
            "set": row["group"],
            "ul": row["ul"],
            "name": row["mxf_name"],
            "local-tag": row["local_tag"] or "-",
            "type": type_name,
            "collection": collection,
            "reference": reference,
            "target": target,
            "required": REQUIRED[row["required"]],
            "order": str(order),
            "schema-index": str(order + 100 * group["depth"]),
            "xml-prefix": prefix,
            "xml-namespace": namespace,
            "xml-tag": row["mxf_name"],
            "_line": row["_line"],
        })


def check_resolved_sets(groups):
    """Every set, with what it inherits, must have distinct labels and XML names."""
    for name, group in groups.items():
        labels, tags = {}, {}
        chain = name
        while chain:
            for element in groups[chain]["elements"]:
                label = element["ul"][:21] + element["ul"][23:]
                qualified = (element["xml-namespace"], element["xml-tag"])
                check(label not in labels, element,
                      f"label of '{element['name']}' repeats in set '{name}'")
                check(qualified not in tags, element,
                      f"XML name '{element['xml-tag']}' repeats in set '{name}'")
                labels[label] = tags[qualified] = element
            chain = groups[chain]["parent"]


def set_record(group):
    prefix, namespace = namespace_of(group, group)
    kind = "pack" if group["pack"] else "set"
    return [kind, group["key"] or "-", group["name"], group["parent"] or "-",
            group["is_abstract"], group["structural"], prefix, namespace, group["name"]]


def render(groups, sources):
    lines = [
        "# Vellum meta-dictionary: the sets, packs and elements of MXF header metadata.",
        "# Generated by tools/make-dictionary.py from " + ", ".join(sources) + ".",
        "# Do not edit by hand; the format is described in docs/dictionary-format.md.",
        f"format\tvellum-dictionary\t{FORMAT_VERSION}",
        "columns\tset\t" + "\t".join(SET_COLUMNS),
        "columns\tpack\t" + "\t".join(SET_COLUMNS),
        "columns\telement\t" + "\t".join(ELEMENT_COLUMNS),
    ]
    for group in groups.values():
        lines.append("")
        lines.append("\t".join(set_record(group)))
        for element in sorted(group["elements"], key=lambda e: int(e["order"])):
            lines.append("\t".join(["element"] + [element[c] for c in ELEMENT_COLUMNS]))
    return "\n".join(lines) + "\n"


def main():
    repository = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("reference", help="folder with groups.tsv and elements.tsv")
    parser.add_argument("-o", "--output",
                        default=os.path.join(repository, "data", "vellum-dictionary.txt"))
    parser.add_argument("--identifiers",
                        default=os.path.join(repository, "include", "Vellum", "Types",
                                             "Identifiers.h"))
    args = parser.parse_args()
    try:
        identifiers = read_type_identifiers(args.identifiers)
        group_rows = read_table(os.path.join(args.reference, "groups.tsv"))
        element_rows = read_table(os.path.join(args.reference, "elements.tsv"))
        groups = build_groups(group_rows)
        build_elements(element_rows, groups, identifiers)
        check_resolved_sets(groups)
    except (Fault, OSError, KeyError, ValueError) as fault:
        print(f"make-dictionary: {fault}", file=sys.stderr)
        return 1
    text = render(groups, ["groups.tsv", "elements.tsv"])
    with open(args.output, "w", encoding="ascii", newline="\n") as handle:
        handle.write(text)
    print(f"wrote {args.output}: {len(groups)} sets and packs, {len(element_rows)} elements")
    return 0


if __name__ == "__main__":
    sys.exit(main())
