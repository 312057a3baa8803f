#!/usr/bin/env python3
"""Generates Vellum's built-in meta-dictionary from the reference tables and the SMPTE registers.

Inputs (all in REFERENCE_DIR):
  groups.tsv, elements.tsv        the MXF sets and elements with their usual MXF names; they
                                  decide the XML names, prefixes, namespaces and value kinds of
                                  every entry they list
  registers/{Groups,Elements,Types}.xml
                                  the SMPTE Metadata Registers: every LEAF local set with the
                                  elements of its contents, typed through the Types register
  extensions/bmx-extension-defs-in-register.tsv
                                  the usual MXF names of register entries (AS-10, AS-11, UK DPP,
                                  AAF meta-dictionary ...)
  extensions/elements-extensions*.tsv
                                  Avid private elements, which no register holds

Outputs:
  data/vellum-dictionary.txt      the dictionary text (format: docs/dictionary-format.md)
  src/MetaMetadata/BuiltInDictionaryTables.cpp
                                  the same definitions as constant tables that the library
                                  compiles in, so that the built-in dictionary needs no parsing

Developers run it by hand when the inputs change; the build never runs it, and both outputs are
checked in.

    tools/make-dictionary.py REFERENCE_DIR [-o data/vellum-dictionary.txt] [--tables FILE]

Python 3 standard library only.
"""

import argparse
import csv
import os
import re
import sys
import xml.etree.ElementTree as ET

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

# Defining documents of register entries that are not SMPTE documents, by a pattern of the
# register's DefiningDocument text, or (for entries without one) of the entry's symbol.
OTHER_DOCUMENTS = [
    # AMWA application documents: "AMWA Application S... AS-nn".
    (re.compile(r"AMWA Application S[a-z]+ AS-(\d+)"),
     lambda m: (f"as{m.group(1)}", f"urn:AMWA:AS-{m.group(1)}")),
    (re.compile(r"\bEBU Tech 3293\b"), lambda m: ("ebucore", "urn:EBU:Tech3293")),
    (re.compile(r"\bBBC Research White Paper\b"), lambda m: ("bbcapp", "urn:BBC:APP")),
    # The AAF object model document named alone: "AAF Object S...".
    (re.compile(r"\AAAF Object S[a-z]+\Z"), lambda m: ("aaf", "urn:AAF:ObjectModel")),
]
AVID = ("avid", "urn:Avid:MXF")
UKDPP = ("ukdpp", "urn:DPP:UKDPP")
AS07 = ("as07", "urn:FADGI:AS-07")
# The register's catch-all for its own classes when nothing else names a document.
AAF = ("aaf", "urn:AAF:ObjectModel")

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

# The schema index of an element is its order plus this much per level of its set's depth.
DEPTH_STEP = 100

# Register namespaces of the three XML files.
GROUPS_NS = "{http://www.smpte-ra.org/ns/395/2016}"
ELEMENTS_NS = "{http://www.smpte-ra.org/schemas/335/2012}"
TYPES_NS = "{http://www.smpte-ra.org/schemas/2003/2012}"

# Register groups that are local sets but never part of header metadata.
NOT_HEADER_METADATA = {"IndexTableSegment"}

# Register types with a value kind of their own, by symbol.
NAMED_TYPES = {
    "AUID": "UniversalLabel",
    "UUID": "UUID",
    "PackageIDType": "UMID32",
    "Rational": "Rational",
    "TimeStamp": "Timestamp",
    "VersionType": "VersionType",
    "ProductVersionType": "ProductVersion",
    "RGBALayout": "RGBALayout",
    "Boolean": "Boolean",
    "LengthType": "Length",
    "PositionType": "Position",
    "DataValue": "DataStream",
    "SignalStandardType": "SignalStandard",
    "ScanningDirectionType": "Orientation",
    "J2KComponentSizing": "J2KPictureComponent",
    "UTF16String": "UTF16String",
    "ISO7": "ISO7String",
    "UTF8String": "ISO7String",
    "UInt8": "UInt8",
    "UInt16": "UInt16",
    "UInt32": "UInt32",
    "UInt64": "UInt64",
    "Int8": "Int8",
    "Int16": "Int16",
    "Int32": "Int32",
    "Int64": "Int64",
}

# Value kinds that a batch or array can hold: the ones of a fixed size.
FIXED_SIZE_KINDS = {
    "Boolean", "Int8", "Int16", "Int32", "Int64", "UInt8", "UInt16", "UInt32", "UInt64",
    "Length", "Position", "ProductVersion", "Rational", "Timestamp", "UMID32", "UniversalLabel",
    "UUID", "VersionType", "Orientation", "SignalStandard", "J2KPictureComponent",
    "StrongReference", "WeakReference",
}


class Fault(Exception):
    """A fact in the inputs that the tool cannot turn into a definition."""


def check(condition, row, message):
    if not condition:
        raise Fault(f"{row['_line']}: {message}")


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


# --- labels ---------------------------------------------------------------------------------

def parse_urn(urn):
    """urn:smpte:ul:060e2b34.xxxxxxxx.xxxxxxxx.xxxxxxxx -> 16 bytes."""
    digits = urn.strip().lower().replace("urn:smpte:ul:", "").replace(".", "")
    data = bytes.fromhex(digits)
    if len(data) != 16:
        raise Fault(f"bad register UL '{urn}'")
    return data


def parse_dotted(text):
    return bytes.fromhex(text.replace(".", ""))


def dotted(data):
    return ".".join(f"{b:02X}" for b in data)


def base_label(data):
    """The label with byte 8 (the version) cleared: labels are compared without it."""
    out = bytearray(data)
    out[7] = 0
    return bytes(out)


def base_group(data):
    """A group key with byte 6 (the coding, 0x7F in the register) and byte 8 cleared."""
    out = bytearray(data)
    out[5] = 0
    out[7] = 0
    return bytes(out)


def local_set_key(data):
    out = bytearray(data)
    out[5] = 0x53
    return bytes(out)


# --- XML names ------------------------------------------------------------------------------

SMPTE_DOCUMENT = re.compile(
    r"(?:(?P<smpte>SMPTE)\s*|\b)(?P<kind>ST|RP|RDD|EG)?[\s-]*(?P<number>\d{2,4})(?P<m>M)?"
    r"(?:[-.](?P<part>\d{1,3})(?!\d))?")


def smpte_namespace(document):
    """Prefix and namespace of the first SMPTE document named in register text, or None.

    ST 377-1 -> s377m, SMPTE 377M -> s377m, ST 2067-201 -> s2067-201m, RP 2057 -> rp2057,
    RDD 18 -> rdd18; ST 380 (DMS-1) -> dms1. Years (352M-2001, 377-1:2011) are not parts.
    """
    for match in SMPTE_DOCUMENT.finditer(document):
        if not (match.group("smpte") or match.group("kind") or match.group("m")):
            continue
        kind = (match.group("kind") or "ST").upper()
        number = match.group("number")
        part = match.group("part")
        part = f"-{part}" if part and part != "1" else ""
        if kind == "ST" and number == "380":
            return ("dms1", "urn:SMPTE:DMS1")
        if kind == "ST":
            return (f"s{number}{part}m", f"urn:SMPTE:S{number}{part}M")
        return (f"{kind.lower()}{number}{part}", f"urn:SMPTE:{kind}{number}{part}")
    return None


def document_namespace(document, symbol):
    """Prefix and namespace for a register entry, or None if the document names none."""
    if symbol.startswith("AS_07"):
        return AS07
    if "UKDPP" in symbol:
        return UKDPP
    if not document:
        return None
    for pattern, make in OTHER_DOCUMENTS:
        found = pattern.search(document)
        if found:
            return make(found)
    # Standards of other bodies (ISO, IETF, W3C, ITU ...) name the value's syntax, not the
    # vocabulary the element belongs to.
    if re.match(r"\s*(ISO|RFC|http|ITU|IEEE|ATSC|AMWA Rules)", document):
        return None
    return smpte_namespace(document)


def namespace_of(group, row):
    standard = group["standard"]
    check(standard in STANDARD_NAMESPACES, row, f"no XML namespace for standard '{standard}'")
    return STANDARD_NAMESPACES[standard]


def xml_name(symbol):
    return symbol if NAME_PATTERN.match(symbol) else "_" + re.sub(r"[^A-Za-z0-9_.-]", "_", symbol)


# --- the reference tables -------------------------------------------------------------------

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
        prefix, namespace = namespace_of(row, row)
        groups[name] = {
            "name": name, "key": key, "parent": parent, "abstract": row["is_abstract"],
            "structural": row["structural"], "pack": is_pack, "depth": depth,
            "prefix": prefix, "namespace": namespace, "tag": name, "elements": [],
            "source": "tsv", "_line": row["_line"],
        }
    return groups


def tsv_element(row, groups, identifiers):
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
    if row["mxf_name"] in IDENTITY_ELEMENTS:
        prefix, namespace = RP210
    else:
        prefix, namespace = group["prefix"], group["namespace"]
    return {
        "set": row["group"], "ul": row["ul"], "name": row["mxf_name"],
        "local-tag": row["local_tag"] or "-", "type": type_name, "collection": collection,
        "reference": reference, "target": target, "required": REQUIRED[row["required"]],
        "order": order, "xml-prefix": prefix, "xml-namespace": namespace,
        "xml-tag": row["mxf_name"], "source": "tsv", "_line": row["_line"],
    }


# --- the registers --------------------------------------------------------------------------

def read_register(path, namespace):
    root = ET.parse(path).getroot()
    return [entry for entry in root.iter(namespace + "Entry")]


def text_of(entry, namespace, field):
    value = entry.findtext(namespace + field)
    return value.strip() if value else ""


def register_notice(path):
    """The SMPTE notice: the first comment of the register file, as lines."""
    with open(path, encoding="utf-8") as handle:
        head = handle.read(16384)
    match = re.search(r"<!--\s*\n(Copyright.*?)-->", head, re.DOTALL)
    if match is None:
        raise Fault(f"{path}: no SMPTE notice found at the top")
    lines = [line.rstrip() for line in match.group(1).strip().splitlines()]
    for line in lines:
        if re.search(r"[^\t -~]", line):
            raise Fault(f"{path}: the notice holds a character that is not printable ASCII")
    return lines


class Registers:
    def __init__(self, folder):
        self.groups = {}
        self.group_order = []
        for entry in read_register(os.path.join(folder, "Groups.xml"), GROUPS_NS):
            if text_of(entry, GROUPS_NS, "Kind") != "LEAF":
                continue
            ul = parse_urn(text_of(entry, GROUPS_NS, "UL"))
            parent = text_of(entry, GROUPS_NS, "Parent")
            records = []
            for record in entry.findall(f"{GROUPS_NS}Contents/{GROUPS_NS}Record"):
                tag = text_of(record, GROUPS_NS, "LocalTag")
                records.append({
                    "ul": parse_urn(text_of(record, GROUPS_NS, "UL")),
                    "tag": int(tag, 16) if tag else None,
                    "optional": text_of(record, GROUPS_NS, "IsOptional") != "false",
                })
            group = {
                "symbol": text_of(entry, GROUPS_NS, "Symbol"),
                "ul": ul,
                "parent": base_group(parse_urn(parent)) if parent else None,
                "concrete": text_of(entry, GROUPS_NS, "IsConcrete"),
                "syntax": text_of(entry, GROUPS_NS, "KLVSyntax"),
                "document": text_of(entry, GROUPS_NS, "DefiningDocument"),
                "records": records,
            }
            self.groups[base_group(ul)] = group
            self.group_order.append(base_group(ul))
        self.elements = {}
        for entry in read_register(os.path.join(folder, "Elements.xml"), ELEMENTS_NS):
            if text_of(entry, ELEMENTS_NS, "Kind") != "LEAF":
                continue
            ul = parse_urn(text_of(entry, ELEMENTS_NS, "UL"))
            type_ul = text_of(entry, ELEMENTS_NS, "Type")
            self.elements[base_label(ul)] = {
                "symbol": text_of(entry, ELEMENTS_NS, "Symbol"),
                "ul": ul,
                "type": base_label(parse_urn(type_ul)) if type_ul else None,
                "document": text_of(entry, ELEMENTS_NS, "DefiningDocument"),
            }
        self.types = {}
        for entry in read_register(os.path.join(folder, "Types.xml"), TYPES_NS):
            if text_of(entry, TYPES_NS, "Kind") != "LEAF":
                continue
            base_type = text_of(entry, TYPES_NS, "BaseType")
            self.types[base_label(parse_urn(text_of(entry, TYPES_NS, "UL")))] = {
                "symbol": text_of(entry, TYPES_NS, "Symbol"),
                "kind": text_of(entry, TYPES_NS, "TypeKind"),
                "base": parse_urn(base_type) if base_type else None,
            }
        self.notice = register_notice(os.path.join(folder, "Types.xml"))


def is_local_set(group):
    return "53" in group["syntax"].split() and group["symbol"] not in NOT_HEADER_METADATA


# --- merging --------------------------------------------------------------------------------

class Merger:
    def __init__(self, groups, registers, identifiers, crosswalk, log):
        self.groups = groups
        self.registers = registers
        self.identifiers = identifiers
        self.log = log
        self.set_names = {}      # register group base key -> set name
        self.tsv_by_label = {}   # base label -> first elements.tsv definition
        self.tag_owner = {}      # static tag -> base label
        self.label_tag = {}      # base label -> static tag (or None)
        self.bmx_sets = {}
        self.bmx_items = {}
        for row in crosswalk:
            key = base_group(parse_dotted(row["register_ul"])) if row["kind"] == "set" \
                else base_label(parse_dotted(row["register_ul"]))
            target = self.bmx_sets if row["kind"] == "set" else self.bmx_items
            target.setdefault(key, row["bmx_name"])
        self.type_cache = {}

    # sets

    def add_register_sets(self):
        by_base_key = {base_group(parse_dotted(g["key"])): name
                       for name, g in self.groups.items() if g["key"]}
        for base, group in self.registers.groups.items():
            if base in by_base_key:
                self.set_names[base] = by_base_key[base]
        wanted = [b for b in self.registers.group_order
                  if is_local_set(self.registers.groups[b]) and b not in self.set_names]
        placed = set()
        pending = list(wanted)
        while pending:
            progress = []
            for base in pending:
                parent = self.registers.groups[base]["parent"]
                if parent is None or parent in self.set_names:
                    self.make_set(base)
                    placed.add(base)
                    progress.append(base)
            if not progress:
                names = ", ".join(self.registers.groups[b]["symbol"] for b in pending)
                raise Fault(f"register groups without a usable parent: {names}")
            pending = [b for b in pending if b not in placed]

    def make_set(self, base):
        group = self.registers.groups[base]
        name = xml_name(self.bmx_sets.get(base, group["symbol"]))
        if name in self.groups:
            self.log(f"set name {name} is taken; register group {group['symbol']} is "
                     f"named {name}_{group['symbol']}")
            name = f"{name}_{group['symbol']}"
        parent = self.set_names.get(group["parent"]) if group["parent"] else None
        parent_set = self.groups[parent] if parent else None
        namespace = document_namespace(group["document"], group["symbol"])
        if namespace is None:
            namespace = self.majority_element_namespace(group)
        if namespace is None:
            namespace = (parent_set["prefix"], parent_set["namespace"]) if parent_set else AAF
        key = local_set_key(group["ul"])
        # A set is structural metadata as its parent is; the AAF definition objects live in
        # the Dictionary, which is not.
        structural = parent_set["structural"] if parent_set else "no"
        if group["symbol"] == "DefinitionObject":
            structural = "no"
        self.groups[name] = {
            "name": name, "key": dotted(key), "parent": parent or "",
            "abstract": "yes" if group["concrete"] == "false" else "no",
            "structural": structural, "pack": False,
            "depth": parent_set["depth"] + 1 if parent_set else 0,
            "prefix": namespace[0], "namespace": namespace[1], "tag": name, "elements": [],
            "source": "register", "_line": f"Groups.xml:{group['symbol']}",
        }
        self.set_names[base] = name

    def majority_element_namespace(self, group):
        counts = {}
        for record in group["records"]:
            element = self.registers.elements.get(base_label(record["ul"]))
            if element is not None:
                found = document_namespace(element["document"], element["symbol"])
                if found is not None:
                    counts[found] = counts.get(found, 0) + 1
        return max(sorted(counts), key=lambda n: counts[n]) if counts else None

    # elements

    def add_tsv_elements(self, element_rows):
        for row in element_rows:
            element = tsv_element(row, self.groups, self.identifiers)
            self.groups[element["set"]]["elements"].append(element)
            label = base_label(parse_dotted(element["ul"]))
            self.tsv_by_label.setdefault(label, element)
            tag = None if element["local-tag"] == "-" else int(element["local-tag"], 16)
            if tag is not None:
                owner = self.tag_owner.setdefault(tag, label)
                check(owner == label, row, f"local tag {element['local-tag']} has two labels")
                self.label_tag[label] = tag
            else:
                self.label_tag.setdefault(label, None)

    def ancestors(self, name):
        chain = []
        while name:
            chain.append(name)
            name = self.groups[name]["parent"]
        return chain

    def labels_of(self, name):
        return {base_label(parse_dotted(e["ul"])) for e in self.groups[name]["elements"]}

    def add_register_elements(self):
        self.labels = {name: self.labels_of(name) for name in self.groups}
        self.related = {name: set(self.ancestors(name)) for name in self.groups}
        for name in self.groups:
            for ancestor in self.ancestors(name)[1:]:
                self.related[ancestor].add(name)
        # Parents first, so that an element a register group repeats from its parent stays
        # with the parent.
        bases = [b for b in self.registers.group_order if b in self.set_names]
        bases.sort(key=lambda b: self.groups[self.set_names[b]]["depth"])
        for base in bases:
            name = self.set_names[base]
            if self.groups[name]["pack"]:
                continue
            for record in self.registers.groups[base]["records"]:
                self.add_record(name, record)
        self.add_identity_to_roots()

    def add_identity_to_roots(self):
        """Every object of the MXF and AAF object model in header metadata carries its
        InstanceUID; the register lists it for InterchangeObject and MetaDefinition only, so
        the other root classes of that model (MetaDictionary ...) get it too."""
        identity = next(e for e in self.groups["InterchangeObject"]["elements"]
                        if e["name"] == "InstanceUID")
        label = base_label(parse_dotted(identity["ul"]))
        for name, group in self.groups.items():
            key = parse_dotted(group["key"]) if group["key"] else b""
            if group["parent"] or group["pack"] or key[8:12] != bytes([0x0D, 1, 1, 1]) or \
                    label in self.labels[name]:
                continue
            element = dict(identity, set=name, source="register", order=self.next_order(group))
            group["elements"].append(element)
            self.labels[name].add(label)
            self.log(f"{name}: root class of the object model; given InstanceUID")

    def defined_above_or_below(self, name, label):
        """A set related by inheritance to `name` (itself included) that lists `label`."""
        for other in sorted(self.related[name]):
            if label in self.labels[other]:
                return other
        return None

    def add_record(self, set_name, record):
        label = base_label(record["ul"])
        related = self.defined_above_or_below(set_name, label)
        if related is not None:
            if related != set_name:
                self.log(f"{set_name}: {dotted(record['ul'])} is already in related set "
                         f"{related}; not listed again")
            return
        group = self.groups[set_name]
        known = self.tsv_by_label.get(label)
        register_element = self.registers.elements.get(label)
        if known is None and register_element is None:
            self.log(f"{set_name}: {dotted(record['ul'])} is not in the Elements register; "
                     f"left out")
            return
        if known is not None:
            element = dict(known)
            element["source"] = "register"
            element["required"] = "optional" if record["optional"] else "required"
        else:
            symbol = register_element["symbol"]
            tag_name = xml_name(self.bmx_items.get(label, symbol))
            kind = self.value_kind(register_element["type"])
            namespace = document_namespace(register_element["document"], symbol) or \
                (group["prefix"], group["namespace"])
            element = {
                "ul": dotted(register_element["ul"]), "name": tag_name,
                "xml-prefix": namespace[0], "xml-namespace": namespace[1], "xml-tag": tag_name,
                "required": "optional" if record["optional"] else "required",
                "source": "register", "_line": f"Groups.xml:{symbol}",
            }
            element.update(kind)
        element["set"] = set_name
        element["local-tag"] = self.static_tag(label, record["tag"], set_name, element["name"])
        element["order"] = self.next_order(group)
        group["elements"].append(element)
        self.labels[set_name].add(label)

    def static_tag(self, label, tag, set_name, name):
        if label in self.label_tag and self.label_tag[label] is not None:
            return f"{self.label_tag[label]:04X}"
        if tag is None or tag == 0 or tag >= 0x8000:
            return "-"
        owner = self.tag_owner.get(tag)
        if owner is not None and owner != label:
            self.log(f"{set_name}.{name}: static tag {tag:04X} already belongs to "
                     f"{dotted(owner)}; left dynamic")
            return "-"
        self.tag_owner[tag] = label
        self.label_tag[label] = tag
        return f"{tag:04X}"

    @staticmethod
    def next_order(group):
        return max((e["order"] for e in group["elements"]), default=0) + 1

    def add_extension_elements(self, rows):
        for row in rows:
            if not row["ul"]:
                continue  # the Avid root set's items have no label; the set is left out
            check(row["group"] in self.groups, row, f"unknown group '{row['group']}'")
            group = self.groups[row["group"]]
            element = tsv_element(dict(row, order="1"), self.groups, self.identifiers)
            label = base_label(parse_dotted(element["ul"]))
            check(label not in self.labels_of(row["group"]), row, "label listed twice")
            element.update({
                "order": self.next_order(group), "xml-prefix": AVID[0],
                "xml-namespace": AVID[1], "source": "extension",
            })
            group["elements"].append(element)

    # types

    def value_kind(self, type_label):
        """The value kind of a register type: type, collection, reference and target."""
        if type_label not in self.type_cache:
            self.type_cache[type_label] = self.resolve_type(type_label)
        return dict(self.type_cache[type_label])

    def single_kind(self, type_label, depth=0):
        """Value kind name of one value of a register type, or None if none fits."""
        entry = self.registers.types.get(type_label)
        if entry is None or depth > 16:
            return None
        if entry["symbol"] in NAMED_TYPES:
            return NAMED_TYPES[entry["symbol"]]
        kind = entry["kind"]
        if kind in ("Rename", "Enumeration") and entry["base"] is not None:
            return self.single_kind(base_label(entry["base"]), depth + 1)
        return None

    def reference_target(self, group_ul):
        name = self.set_names.get(base_group(group_ul))
        if name is None or self.groups[name]["pack"]:
            return None
        return name

    def is_definition(self, name):
        chain = self.ancestors(name)
        return any(n in ("DefinitionObject", "MetaDefinition") for n in chain)

    def item_kind(self, type_label):
        """(type, reference, target) of one item or value, or None."""
        entry = self.registers.types.get(type_label)
        if entry is None:
            return None
        if entry["kind"] == "StrongReference":
            target = self.reference_target(entry["base"]) if entry["base"] else None
            return ("StrongReference", "strong", target) if target else None
        if entry["kind"] == "WeakReference":
            target = self.reference_target(entry["base"]) if entry["base"] else None
            if target is None:
                return None
            if self.is_definition(target):
                # Definitions are named by their identification, an AUID.
                return ("UniversalLabel", "none", "-")
            if "GlobalReference" in entry["symbol"]:
                return ("UUID", "global", target)
            return ("WeakReference", "weak", target)
        single = self.single_kind(type_label)
        return (single, "none", "-") if single else None

    def resolve_type(self, type_label):
        unknown = {"type": "Unknown", "collection": "none", "reference": "none", "target": "-"}
        if type_label is None:
            return unknown
        entry = self.registers.types.get(type_label)
        if entry is None:
            return unknown
        while entry["kind"] == "Rename" and entry["symbol"] not in NAMED_TYPES and \
                entry["base"] is not None:
            type_label = base_label(entry["base"])
            entry = self.registers.types.get(type_label)
            if entry is None:
                return unknown
        collection = {"Set": "batch", "VariableArray": "array"}.get(entry["kind"])
        if collection is not None and entry["symbol"] not in NAMED_TYPES:
            item = self.item_kind(base_label(entry["base"])) if entry["base"] else None
            if item is None or item[0] not in FIXED_SIZE_KINDS:
                return unknown
            if item[0] == "UInt8" and collection == "array":
                # Byte arrays are stored as plain bytes, without an item count and size, as
                # DataValue is.
                return {"type": "DataStream", "collection": "none", "reference": "none",
                        "target": "-"}
            return {"type": item[0], "collection": collection, "reference": item[1],
                    "target": item[2]}
        item = self.item_kind(type_label)
        if item is None:
            return unknown
        return {"type": item[0], "collection": "none", "reference": item[1], "target": item[2]}

    # names and indexes

    def resolve_name_clashes(self):
        """Gives a register or extension element a suffix where its qualified XML name is
        taken, in a set that has it, by an element with another label."""
        changed = True
        while changed:
            changed = False
            for name in self.groups:
                seen = {}
                for ancestor in reversed(self.ancestors(name)):
                    for element in sorted(self.groups[ancestor]["elements"],
                                          key=lambda e: e["order"]):
                        qualified = (element["xml-namespace"], element["xml-tag"])
                        other = seen.get(qualified)
                        if other is None:
                            seen[qualified] = element
                            continue
                        renamed = element if element["source"] != "tsv" else other
                        check(renamed["source"] != "tsv", element,
                              f"two listed elements share the XML name {qualified[1]}")
                        self.rename(renamed, seen)
                        changed = True
                        break
                    if changed:
                        break
                if changed:
                    break

    def rename(self, element, seen):
        number = 2
        while (element["xml-namespace"], f"{element['xml-tag']}_{number}") in seen:
            number += 1
        new_name = f"{element['xml-tag']}_{number}"
        self.log(f"{element['set']}.{element['xml-tag']} ({element['ul']}) clashes by XML "
                 f"name; named {new_name}")
        element["name"] = element["xml-tag"] = new_name

    def finish(self):
        for group in self.groups.values():
            for element in group["elements"]:
                if element["order"] >= DEPTH_STEP:
                    raise Fault(f"set {group['name']} has more than {DEPTH_STEP - 1} elements")
                element["schema-index"] = element["order"] + DEPTH_STEP * group["depth"]


def check_resolved_sets(groups):
    """Every set, with what it inherits, must have distinct labels and XML names."""
    for name in groups:
        labels, tags = {}, {}
        chain = name
        while chain:
            for element in groups[chain]["elements"]:
                label = base_label(parse_dotted(element["ul"]))
                qualified = (element["xml-namespace"], element["xml-tag"])
                check(label not in labels, element,
                      f"label of '{element['name']}' repeats in set '{name}'")
                check(qualified not in tags, element,
                      f"XML name '{element['xml-tag']}' repeats in set '{name}'")
                labels[label] = tags[qualified] = element
            chain = groups[chain]["parent"]


# --- output ---------------------------------------------------------------------------------

def set_record(group):
    kind = "pack" if group["pack"] else "set"
    return [kind, group["key"] or "-", group["name"], group["parent"] or "-",
            group["abstract"], group["structural"], group["prefix"], group["namespace"],
            group["tag"]]


def element_fields(element):
    return [element["set"], element["ul"], element["name"], element["local-tag"],
            element["type"], element["collection"], element["reference"], element["target"],
            element["required"], str(element["order"]), str(element["schema-index"]),
            element["xml-prefix"], element["xml-namespace"], element["xml-tag"]]


def ordered_elements(group):
    return sorted(group["elements"], key=lambda e: e["order"])


def render_text(groups, notice):
    lines = [
        "# Vellum meta-dictionary: the sets, packs and elements of MXF header metadata.",
        "# Generated by tools/make-dictionary.py from groups.tsv and elements.tsv, from the",
        "# SMPTE Metadata Registers (Groups, Elements and Types registers) and from the",
        "# extension tables (usual MXF names of register entries, Avid private elements).",
        "# Do not edit by hand; the format is described in docs/dictionary-format.md.",
        "#",
        "# This data derives from the SMPTE Metadata Registers, which carry this notice:",
        "#",
    ]
    lines += [("# " + line).rstrip() for line in notice]
    lines += [
        f"format\tvellum-dictionary\t{FORMAT_VERSION}",
        "columns\tset\t" + "\t".join(SET_COLUMNS),
        "columns\tpack\t" + "\t".join(SET_COLUMNS),
        "columns\telement\t" + "\t".join(ELEMENT_COLUMNS),
    ]
    for group in groups.values():
        lines.append("")
        lines.append("\t".join(set_record(group)))
        for element in ordered_elements(group):
            lines.append("\t".join(["element"] + element_fields(element)))
    return "\n".join(lines) + "\n"


class StringPool:
    """Distinct strings, each stored once as a UTF-16 literal."""

    def __init__(self):
        self.index = {}
        self.strings = []

    def __call__(self, text):
        if text not in self.index:
            self.index[text] = len(self.strings)
            self.strings.append(text)
        return self.index[text]


def byte_list(text):
    return "{" + ",".join(f"0x{b:02X}" for b in parse_dotted(text)) + "}"


def render_tables(groups, notice, identifiers):
    """The same definitions as C++ constant tables (see BuiltInDictionaryTables.h)."""
    for group in groups.values():
        for element in group["elements"]:
            if element["type"] not in identifiers:
                raise Fault(f"{element['_line']}: '{element['type']}' is not a type identifier")
    pool = StringPool()
    names = list(groups)
    index_of = {name: i for i, name in enumerate(names)}
    required = {"required": "Required", "optional": "Optional", "best-effort": "BestEffort",
                "decoder-required": "DecoderRequired", "encoder-required": "EncoderRequired"}
    set_rows, element_rows = [], []
    by_label, by_tag = {}, {}
    for name in names:
        group = groups[name]
        first = len(element_rows)
        for element in ordered_elements(group):
            tag = element["local-tag"]
            # The definition a label or tag look-up gives: a local set's rather than a pack's,
            # one with a static tag rather than one without, else the first in table order.
            preference = (0 if group["pack"] else 2) + (0 if tag == "-" else 1)
            row = len(element_rows)
            label = dotted(base_label(parse_dotted(element["ul"])))
            if label not in by_label or preference > by_label[label][0]:
                by_label[label] = (preference, row)
            if tag != "-" and (tag not in by_tag or preference > by_tag[tag][0]):
                by_tag[tag] = (preference, row)
            element_rows.append(
                "    {" + ", ".join([
                    str(index_of[name]),
                    byte_list(element["ul"]),
                    str(pool(element["name"])),
                    "0x" + tag if tag != "-" else "0",
                    "Id::" + element["type"],
                    "Col::" + element["collection"].capitalize(),
                    "Ref::" + element["reference"].capitalize(),
                    str(index_of[element["target"]]) if element["target"] != "-" else "noSet",
                    "Req::" + required[element["required"]],
                    str(element["order"]),
                    str(element["schema-index"]),
                    str(pool(element["xml-prefix"])),
                    str(pool(element["xml-namespace"])),
                    str(pool(element["xml-tag"])),
                ]) + "},")
        flags = (["abstractFlag"] if group["abstract"] == "yes" else []) + \
            (["structuralFlag"] if group["structural"] == "yes" else []) + \
            (["packFlag"] if group["pack"] else []) + \
            (["keyFlag"] if group["key"] else [])
        set_rows.append(
            "    {" + ", ".join([
                byte_list(group["key"]) if group["key"] else "{}",
                str(pool(name)),
                str(index_of[group["parent"]]) if group["parent"] else "noSet",
                " | ".join(flags) if flags else "0",
                str(pool(group["prefix"])),
                str(pool(group["namespace"])),
                str(pool(group["tag"])),
                str(first),
                str(len(element_rows) - first),
            ]) + "},")
    label_rows = [f"    {{{byte_list(label)}, {by_label[label][1]}}},"
                  for label in sorted(by_label)]
    # Indexes of the sets by key (byte 8 cleared) and by name, so that a set is found without
    # making the others.
    by_key = {dotted(base_label(parse_dotted(groups[name]["key"]))): index_of[name]
              for name in names if groups[name]["key"]}
    if len(by_key) != sum(1 for name in names if groups[name]["key"]):
        raise Fault("two sets have the same key")
    set_key_rows = [f"    {{{byte_list(key)}, {by_key[key]}}}," for key in sorted(by_key)]
    set_name_rows = [f"    {index_of[name]}," for name in sorted(names)]
    # The local sets with a key by XML tag name; of sets that share one, the first in key order.
    by_tag_name = {}
    for name in names:
        group = groups[name]
        if group["key"] and not group["pack"]:
            key = parse_dotted(group["key"])
            if group["tag"] not in by_tag_name or key < by_tag_name[group["tag"]][0]:
                by_tag_name[group["tag"]] = (key, index_of[name])
    set_tag_rows = [f"    {{{pool(tag)}, {by_tag_name[tag][1]}}},"
                    for tag in sorted(by_tag_name)]
    tag_rows = [f"    {{0x{tag}, {by_tag[tag][1]}}}," for tag in sorted(by_tag)]
    # One array of all the texts and their start offsets: unlike a table of views it holds no
    # pointers, so the program's loader has nothing to relocate in it.
    strings = [f"    u\"{text}\"" for text in pool.strings]
    starts = [0]
    for text in pool.strings:
        starts.append(starts[-1] + len(text))
    start_rows = [f"    {', '.join(str(n) for n in starts[i:i + 12])}," for i in range(0, len(starts), 12)]
    for text in pool.strings:
        if not re.match(r"[ -~]*\Z", text) or '"' in text or "\\" in text:
            raise Fault(f"string '{text}' cannot be written as a plain literal")
    notice_lines = ["// " + line if line else "//" for line in notice]
    return "\n".join([
        "// clang-format off",
        "// Generated by tools/make-dictionary.py together with data/vellum-dictionary.txt;",
        "// do not edit. The definitions equal those of the text file, in the same order.",
        "//",
        "// This data derives from the SMPTE Metadata Registers, which carry this notice:",
        "//",
    ] + notice_lines + [
        "",
        "#include \"MetaMetadata/BuiltInDictionaryTables.h\"",
        "",
        "#include <iterator>",
        "",
        "namespace Vellum::MetaMetadata::BuiltInTables {",
        "namespace {",
        "",
        "using Id = Types::Identifiers::Identifier;",
        "using Ref = MetaElement::ReferenceKind;",
        "using Req = AttributeRequiredStatus::Status;",
        "using Col = Collection;",
        "",
        "constexpr char16_t stringData[] =",
    ] + strings + [
        "    ;",
        "",
        "constexpr std::uint32_t stringStarts[] = {",
    ] + start_rows + [
        "};",
        "",
        "constexpr SetRow setTable[] = {",
    ] + set_rows + [
        "};",
        "",
        "constexpr ElementRow elementTable[] = {",
    ] + element_rows + [
        "};",
        "",
        "constexpr LabelRow labelTable[] = {",
    ] + label_rows + [
        "};",
        "",
        "constexpr TagRow tagTable[] = {",
    ] + tag_rows + [
        "};",
        "",
        "constexpr SetKeyRow setKeyTable[] = {",
    ] + set_key_rows + [
        "};",
        "",
        "constexpr std::uint16_t setNameTable[] = {",
    ] + set_name_rows + [
        "};",
        "",
        "constexpr SetTagRow setTagTable[] = {",
    ] + set_tag_rows + [
        "};",
        "",
        "} // namespace",
        "",
        "const Tables& tables() noexcept {",
        "    static constexpr Tables all{stringData, std::size(stringData) - 1, stringStarts,",
        "                                std::size(stringStarts) - 1,",
        "                                setTable, std::size(setTable), elementTable,",
        "                                std::size(elementTable),",
        "                                labelTable, std::size(labelTable), tagTable,",
        "                                std::size(tagTable), setKeyTable, std::size(setKeyTable),",
        "                                setNameTable, std::size(setNameTable), setTagTable,",
        "                                std::size(setTagTable)};",
        "    return all;",
        "}",
        "",
        "} // namespace Vellum::MetaMetadata::BuiltInTables",
        "// clang-format on",
        "",
    ])


def main():
    repository = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("reference", help="folder with groups.tsv, elements.tsv, registers/ "
                                          "and extensions/")
    parser.add_argument("-o", "--output",
                        default=os.path.join(repository, "data", "vellum-dictionary.txt"))
    parser.add_argument("--tables",
                        default=os.path.join(repository, "src", "MetaMetadata",
                                             "BuiltInDictionaryTables.cpp"))
    parser.add_argument("--identifiers",
                        default=os.path.join(repository, "include", "Vellum", "Types",
                                             "Identifiers.h"))
    parser.add_argument("-v", "--verbose", action="store_true",
                        help="report every choice made while merging")
    args = parser.parse_args()
    choices = []
    try:
        identifiers = read_type_identifiers(args.identifiers)
        reference = args.reference
        groups = build_groups(read_table(os.path.join(reference, "groups.tsv")))
        registers = Registers(os.path.join(reference, "registers"))
        extensions = os.path.join(reference, "extensions")
        crosswalk = read_table(os.path.join(extensions, "bmx-extension-defs-in-register.tsv"))
        merger = Merger(groups, registers, identifiers, crosswalk, choices.append)
        merger.add_register_sets()
        merger.add_tsv_elements(read_table(os.path.join(reference, "elements.tsv")))
        merger.add_register_elements()
        for table in ("elements-extensions.tsv", "elements-extensions-avid-metadictionary.tsv"):
            merger.add_extension_elements(read_table(os.path.join(extensions, table)))
        merger.resolve_name_clashes()
        merger.finish()
        check_resolved_sets(groups)
    except (Fault, OSError, KeyError, ValueError, ET.ParseError) as fault:
        print(f"make-dictionary: {fault}", file=sys.stderr)
        return 1
    if args.verbose:
        for choice in choices:
            print(choice)
    with open(args.output, "w", encoding="ascii", newline="\n") as handle:
        handle.write(render_text(groups, registers.notice))
    with open(args.tables, "w", encoding="ascii", newline="\n") as handle:
        handle.write(render_tables(groups, registers.notice, identifiers))
    element_count = sum(len(g["elements"]) for g in groups.values())
    print(f"wrote {args.output} and {args.tables}: {len(groups)} sets and packs, "
          f"{element_count} elements ({len(choices)} merge choices; -v lists them)")
    return 0


if __name__ == "__main__":
    sys.exit(main())
