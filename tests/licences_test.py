"""What is said of licences, against the build and against the packages that are installed.

    licences_test.py SOURCE_DIR

Every library that the command or the library is made with has a row in docs/licences.md. Its
licence and its holders of copyright are those of /usr/share/doc/PACKAGE/copyright, and where parts
of it are installed, cmake/copyright names the holders and has the text. Ends with 77 where there is
no such file to compare with.
"""
import pathlib
import re
import sys

DEBIAN = pathlib.Path("/usr/share/doc")
# Of the licence's names in Debian's files that which docs/licences.md has.
NAMES = {"Expat": "MIT", "Expat with embedded exception": "MIT, with an exception",
         "GPL-2+ or LGPL-3+": "LGPL-3+ or GPL-2+"}
# Linked with, as a shared library whose headers have nothing but declarations for us.
NOT_CONTAINED = {"libmimalloc-dev"}


def read_paragraphs(path):
    """The paragraphs of a machine-readable copyright file: fields with their lines, as lists."""
    for text in re.split(r"\n[ \t]*\n", path.read_text()):
        fields = {}
        for line in text.splitlines():
            name = re.match(r"([A-Za-z-]+):(.*)", line)
            if name:
                fields[name[1]] = [name[2].strip()]
            elif fields:
                fields[list(fields)[-1]].append(line.strip())
        yield fields


def read_copyright(path):
    """The licence and the holders of the whole, and the texts of licences by their names."""
    licence, holders, texts = "", [], {}
    for fields in read_paragraphs(path):
        if fields.get("Files") == ["*"]:
            licence = fields["License"][0]
            holders = [normalise(line) for line in fields["Copyright"] if line]
        if len(fields.get("License", [])) > 1:
            texts[fields["License"][0]] = " ".join(" ".join(fields["License"][1:]).split())
    return licence, holders, texts


def normalise(holder):
    return " ".join(re.sub(r"^Copyright (\(c\) )?", "", holder).split())


def read_rows(text):
    """Library, package and licence of each row of the table."""
    rows = re.findall(r"^\| ([^|]+) \| ([^|]+) \| ([^|]+) \| [^|]+ \|$", text, re.M)
    return rows[1:] if rows and rows[0][0] == "Library" else rows


def find_errors(root):
    rows = read_rows((root / "docs/licences.md").read_text())
    own_path = root / "cmake/copyright"
    own = " ".join(own_path.read_text().split())
    _, _, own_texts = read_copyright(own_path)
    errors = []
    wanted = re.findall(r"find_package\((\w+) REQUIRED\)", (root / "CMakeLists.txt").read_text())
    known = {re.sub(r"\W", "_", library).lower() for library, _, _ in rows}
    errors += [f"docs/licences.md has no row of {name}" for name in wanted if name.lower() not in known]
    text = " ".join(" ".join((root / "LICENSE").read_text().splitlines()[4:]).split())
    if own_texts.get("Expat", "").replace(" . ", " ") != text:
        errors.append("cmake/copyright has another text than LICENSE")
    compared = 0
    for _, package, licence in rows:
        path = DEBIAN / package / "copyright"
        if not path.exists():
            continue
        compared += 1
        theirs, holders, texts = read_copyright(path)
        if not licence.startswith(NAMES.get(theirs, theirs)):
            errors.append(f"{package}: docs/licences.md says {licence}, the package {theirs}")
        if package in NOT_CONTAINED:
            continue
        errors += [f"{package}: cmake/copyright lacks '{holder}'" for holder in holders if holder not in own]
        if theirs == "BSD-3-clause" and own_texts.get(theirs) != texts[theirs]:
            errors.append(f"{package}: cmake/copyright has another text of {theirs}")
    return errors, len(rows), compared


def main():
    errors, rows, compared = find_errors(pathlib.Path(sys.argv[1]))
    for error in errors:
        print(error)
    print(f"{rows} libraries, {compared} of them compared with their packages, {len(errors)} errors")
    if errors or rows == 0:
        sys.exit(1)
    sys.exit(77 if compared == 0 else 0)


if __name__ == "__main__":
    main()
