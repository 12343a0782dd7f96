#!/usr/bin/env python3
"""man.py XML MAN3 VERSION: makes manual pages, one for each function, from Doxygen's XML.

Besides them: pqx_video(3), which holds for all of them, and pqx_video_tables(3), where the name of each table leads.
"""
import re
import sys
import textwrap
import xml.etree.ElementTree as ElementTree
from pathlib import Path

INLINE = {"bold": "B", "emphasis": "I", "computeroutput": "I", "ref": None, "ulink": None, "highlight": None}
SPECIAL = {"sp": " ", "ndash": "-", "mdash": " - ", "nonbreakablespace": " ", "linebreak": "\n"}
BLOCKS = {"para", "itemizedlist", "verbatim", "preformatted", "parameterlist", "simplesect", "programlisting"}
FOOTPRINTS = """What is said of a pointer tells the bytes that are read and written from it on: a number of them, or
rows of so many bytes, each of them so many bytes behind the one before it; from an offset, or from each of several;
nothing where a number is below 1. What may be read is not read by every call. Operators are those of C on integers wide
enough, division truncates toward zero, >> rounds down, int32(x) keeps the low 32 bits of x as a signed number."""


def escape(text):
    """Text as roff prints it: no character of it starts a request or an escape."""
    for sign, printed in {"\\": "\\e", "-": "\\-", "^": "\\(ha", "~": "\\(ti", "`": "\\(ga"}.items():
        text = text.replace(sign, printed)
    return re.sub(r"^([.'])", r"\\&\1", text, flags=re.M)


def flat(element):
    """What stands in an element and below, on one line."""
    text = element.text or ""
    for child in element:
        text += SPECIAL.get(child.tag) or flat(child)
        text += child.tail or ""
    return re.sub(r"\s+", " ", text)


def words(element):
    """The running text of a paragraph with its fonts; blocks within it are left to blocks()."""
    out = escape(re.sub(r"\s+", " ", element.text or ""))
    for child in element:
        if child.tag in SPECIAL:
            out += escape(SPECIAL[child.tag])
        elif child.tag in INLINE:
            font, inner = INLINE[child.tag], words(child)
            out += f"\\f{font}{inner}\\fR" if font else inner
        elif not is_block(child):
            raise ValueError(f"no rule for <{child.tag}>")
        out += escape(re.sub(r"\s+", " ", child.tail or ""))
    return out


def is_block(element):
    return element.tag in BLOCKS


def filled(text):
    """Text broken into lines of the source, none of which begins with a request by chance."""
    lines = textwrap.wrap(text.strip(), 100, break_long_words=False, break_on_hyphens=False)
    return "\n".join("\\&" + line if line[0] in ".'" else line for line in lines)


def literal(text):
    lines = [escape(line) for line in textwrap.dedent(text.strip("\n")).rstrip().split("\n")]
    return ".PP\n.in +4n\n.nf\n" + "\n".join(lines) + "\n.fi\n.in\n"


def pieces(para):
    """Runs of text and the blocks between them. What is said of parameters and the result is left out."""
    run = ElementTree.Element("para")
    run.text = para.text
    for child in para:
        if is_block(child):
            yield run
            if child.tag not in {"parameterlist", "simplesect"}:
                yield child
            run = ElementTree.Element("para")
            run.text = child.tail
        else:
            run.append(child)
    yield run


def blocks(para, start=".PP\n"):
    """A paragraph with the examples and lists that stand in it."""
    out = ""
    for piece in pieces(para):
        if piece.tag in {"verbatim", "preformatted", "programlisting"}:
            out += literal(piece.text)
        elif piece.tag == "itemizedlist":
            for item in piece:
                out += ".IP \\(bu 2\n" + "".join(blocks(p, "") for p in item)
        elif text := filled(words(piece)):
            out += start + text + "\n"
        else:
            continue
        start = ".PP\n"
    return out


def paragraphs(element):
    """Top-level paragraphs only, so that those of parameters and lists are not said twice."""
    return "".join(blocks(p) for p in element.findall("para"))


def brief(member):
    return flat(member.find("briefdescription")).strip()


def purpose(text):
    """A brief description as the line behind a name: without formula and full stop."""
    text = re.split(r"[:;.] |, (?:with|so|as)\b", text)[0].rstrip(".:")
    return escape(text[0].lower() + text[1:] if not text[:2].isupper() else text)


class Library:
    def __init__(self, directory, version):
        self.version = version
        root = lambda name: ElementTree.parse(directory / f"{name}.xml").getroot().find("compounddef")
        index = ElementTree.parse(directory / "index.xml").getroot()
        self.groups = [root(c.get("refid")) for c in index.findall("compound[@kind='group']")]
        self.file = next(root(c.get("refid")) for c in index.findall("compound[@kind='file']")
                         if c.find("name").text == "pqx_video.h")
        self.members = {m.find("name").text: m for group in self.groups for m in group.iter("memberdef")}
        self.group_of = {m.find("name").text: group for group in self.groups for m in group.iter("memberdef")}
        self.core = self.group_of["pqxid"]
        self.date = "-".join(re.search(r":(\d{4})(\d\d)(\d\d):", flat(self.members["pqx_GetVersion"])).groups())

    def of_kind(self, kind, group=None):
        return [name for name, member in self.members.items()
                if member.get("kind") == kind and group in (None, self.group_of[name])]

    def head(self, names, purpose, prototypes):
        """The page up to its synopsis."""
        return (f'.\\" Made by docs/man.py from pqx_video.h.\n.TH {names[0]} 3 {self.date} '
                f'"libpqx_video {self.version}" "pqx_video manual"\n'
                f".SH NAME\n{', '.join(names)} \\- {purpose}\n"
                ".SH LIBRARY\nVideo and picture primitives\n.RI ( libpqx_video ,\\~ \\-lpqx_video )\n"
                f".SH SYNOPSIS\n.nf\n.B #include <pqx_video.h>\n.PP\n{prototypes}.fi\n")

    def function_page(self, name):
        member = self.members[name]
        single = "under this name only" in flat(member.find("detaileddescription"))
        names = [name] if single else [name, "__" + name]
        page = self.head(names, purpose(brief(member)), self.prototype(member))
        page += ".nh\n.SH DESCRIPTION\n" + description(member)  # a hyphen within a formula would be a minus
        parameters = member.findall(".//parameterlist[@kind='param']/parameteritem")
        if parameters:
            page += ".SH PARAMETERS\n"
        for item in parameters:
            text = "".join(blocks(p, "") for p in item.findall("parameterdescription/para"))
            page += f".TP\n.I {item.find('parameternamelist/parametername').text}\n{text}"
        result = "".join(blocks(p, "") for p in member.findall(".//simplesect[@kind='return']/para"))
        page += f".hy\n.SH RETURN VALUE\n{result.strip() or 'None'}.\n"
        if single:
            note = "The function is exported under this name only."
        else:
            note = f"Both names are exported at one entry; calls within the library use \\fI__{name}\\fR."
        common = ("What holds for every operation \\- steps, sizes, formulas, overlapping buffers, threads \\- is in "
                  "\\fBpqx_video\\fR(3).")
        page += f".SH NOTES\n{filled(note)}\n.PP\n{filled(common)}\n"
        return page + self.see_also(name)

    def prototype(self, member):
        """The declaration with its parameters in italics, broken where it would leave 78 columns."""
        result = flat(member.find("type"))
        head = f"{result}{'' if result.endswith('*') else ' '}{member.find('name').text}("
        lines, width = [f'.BI "{escape(head)}'], len(head)
        parameters = [p for p in member.findall("param") if p.find("declname") is not None]
        if not parameters:
            return f'.B "{escape(head)}void);"\n'
        for i, parameter in enumerate(parameters):
            kind, name = flat(parameter.find("type")), parameter.find("declname").text
            kind += "" if kind.endswith("*") else " "
            end = ");" if i == len(parameters) - 1 else ","
            if i and width + len(kind) + len(name) + 3 > 78:
                lines[-1] += '"'
                lines.append('.BI "    ')
                width = 4
            elif i:
                lines[-1] += " "
                width += 1
            lines[-1] += f'{escape(kind)}" {name} "{end}'
            width += len(kind) + len(name) + len(end)
        return "\n".join(lines) + '"\n'

    def see_also(self, name):
        """What the description names, and the neighbours in the header."""
        named = [flat(r).rstrip("()") for r in self.members[name].iter("ref")]
        family = self.of_kind("function", self.group_of[name])
        at = family.index(name)
        functions = self.of_kind("function")
        near = [n for n in dict.fromkeys(named + family[max(at - 3, 0):at + 4]) if n in functions and n != name]
        tables = ["pqx_video_tables"] * any(n in self.of_kind("variable") for n in named)
        return see_also(["pqx_video"] + near + tables)

    def data(self, names):
        return "".join(f".B extern {escape(flat(self.members[name].find('definition')))};\n" for name in names)

    def overview(self):
        data = self.of_kind("variable", self.core)
        how = "\\fBcc\\fR \\fI...\\fR \\fB$(pkg\\-config \\-\\-cflags \\-\\-libs pqx_video)\\fR\n.PP\n"
        what = "inner loops of video codecs and still\\-picture pipelines"
        page = self.head(["pqx_video"], what, how + self.data(data))
        page += ".SH DESCRIPTION\n" + paragraphs(self.file.find("detaileddescription")).removeprefix(".PP\n")
        page += f".SS Footprints\n{filled(escape(FOOTPRINTS))}\n"
        macros = self.of_kind("define")
        versions = [name for name in macros if name.startswith("PQX_VERSION_")]
        codes = [name for name in macros if name not in versions]
        for title, names in ("Status codes", codes), ("Release for the preprocessor", versions):
            page += f".SS {title}\n"
            for name in names:
                member = self.members[name]
                value = flat(member.find("initializer"))
                shown = f" \\ ({value})" if value.isdigit() else ""
                page += f".TP\n.BR {name}{shown}\n{filled(escape(brief(member)))}\n"
        page += ".SS Data\n" + self.entries(data)
        for group in self.groups:
            functions = self.of_kind("function", group)
            if functions or group.find("innergroup") is not None:
                page += f".SS {escape(flat(group.find('title')))}\n{description(group)}"
            for name in functions:
                page += f".TP\n.BR {name} (3)\n{purpose(brief(self.members[name]))}\n"
        return page + see_also(["pqx_video_tables", "pqxvideo"])

    def tables_page(self):
        group = self.group_of["pqx_tYY"]
        tables = self.of_kind("variable", group)
        page = self.head(["pqx_video_tables"] + tables, "tables of the colour conversions", self.data(tables))
        page += f".SH DESCRIPTION\n{description(group)}{self.entries(tables)}"
        return page + see_also(["pqx_video"])

    def entries(self, names):
        page = ""
        for name in names:
            parts = [p for kind in ("brief", "detailed") for p in self.members[name].findall(f"{kind}description/para")]
            page += f".TP\n.B {name}\n" + "".join(blocks(p, "") for p in parts)
        return page


def description(element):
    parts = [paragraphs(element.find(f"{kind}description")) for kind in ("brief", "detailed")]
    return "".join(parts).removeprefix(".PP\n")


def see_also(names):
    lines = [f".BR {name} ({1 if name == 'pqxvideo' else 3})" for name in names]
    return ".SH SEE ALSO\n" + " ,\n".join(lines) + "\n"


def main(xml, target, version):
    library = Library(Path(xml), version)
    pages = {name: library.function_page(name) for name in library.of_kind("function")}
    pages["pqx_video"] = library.overview()
    pages["pqx_video_tables"] = library.tables_page()
    for name in library.of_kind("variable"):
        of_core = library.group_of[name] is library.core
        pages[name] = f".so man3/{'pqx_video' if of_core else 'pqx_video_tables'}.3\n"
    Path(target).mkdir(exist_ok=True)
    for name, page in pages.items():
        (Path(target) / f"{name}.3").write_text(page)


if __name__ == "__main__":
    main(*sys.argv[1:])
