"""The functions and constants of the library's sources, as tokens.

No compiler: the code base is one small uniform dialect, and a page is made in half a second. A
definition is told by what stands before its brace.
"""

import dataclasses
import pathlib
import re

TOKEN = re.compile(
    r"""//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:\\\n|[^\n])*"""  # comments, directives: dropped
    r"""|(?P<token>"(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])'|[A-Za-z_]\w*|\.?\d(?:[\w.']|[eE][+-])*"""
    r"""|::|->|==|!=|<=|>=|\+=|-=|\|=|&&|\|\||\.\.\.|[^\s])""",
    re.S | re.M | re.X,
)
INCLUDE = re.compile(r'^#include "((?:common|platform)/[^"]+)"', re.M)
CLOSERS = {"(": ")", "{": "}", "[": "]"}
SCOPES = ("class", "struct", "union", "enum")


def is_name(text):
    return text[0].isalpha() or text[0] == "_"


@dataclasses.dataclass(frozen=True)
class Token:
    text: str
    file: str
    line: int

    @property
    def is_name(self):
        return is_name(self.text)

    @property
    def is_text(self):
        return self.text[0] == '"'

    def __str__(self):
        return f"{self.file}:{self.line}"


@dataclasses.dataclass(eq=False)
class Function:
    name: str
    owner: str  # the class, "" for none
    file: str
    is_local: bool  # to its file
    template: list  # of the names of its parameters
    parameters: list  # of (name, type)
    body: list  # of tokens; None for a declaration


@dataclasses.dataclass(eq=False)
class Variable:
    name: str
    file: str
    is_tag: bool
    initialiser: list


def tokens_of(path, root):
    text = path.read_text()
    name = str(path.relative_to(root))
    found, line, position = [], 1, 0
    for match in TOKEN.finditer(text):
        if match["token"]:
            line += text.count("\n", position, match.start())
            position = match.start()
            found.append(Token(match["token"], name, line))
    return found


def closing(tokens, opening):
    """The index of the bracket that closes the one at `opening`."""
    depth = 0
    for index in range(opening, len(tokens)):
        text = tokens[index].text
        depth += (text in CLOSERS) - (text in CLOSERS.values())
        if depth == 0:
            return index
    raise SystemExit(f"{tokens[opening]}: a bracket without end")


def closing_angle(tokens, opening):
    """The index of the ">" that closes the "<" at `opening`, none where it is a comparison."""
    depth = 0
    for index in range(opening, len(tokens)):
        text = tokens[index].text
        depth += (text == "<") - (text == ">")
        if depth == 0:
            return index
        if text in (";", "{", "}"):
            return None
    return None


def split_at_commas(tokens):
    """The arguments in a list of them."""
    parts, depth, start = [], 0, 0
    for index, token in enumerate(tokens):
        if token.text == "<" and closing_angle(tokens, index) is not None:
            depth += 1
        elif token.text == ">" and depth > 0:
            depth -= 1
        depth += (token.text in CLOSERS) - (token.text in CLOSERS.values())
        if token.text == "," and depth == 0:
            parts.append(tokens[start:index])
            start = index + 1
    return [part for part in [*parts, tokens[start:]] if part]


def parameter(tokens):
    """The name and the type of a parameter: an unnamed one has its type's last word for a name."""
    texts = [token.text for token in tokens]
    declared = texts[: texts.index("=")] if "=" in texts else texts
    names = [text for text in declared if is_name(text)]
    return (names[-1] if names else ""), declared


def head_at_depth_0(head):
    """The texts of a head outside its brackets, each with its place."""
    depth = 0
    for index, token in enumerate(head):
        depth -= token.text in CLOSERS.values()
        if depth == 0:
            yield index, token.text
        depth += token.text in CLOSERS


class Source:
    """Everything that is declared and defined in the files below a folder."""

    def __init__(self, root, folder):
        self.root = pathlib.Path(root)
        self.functions, self.variables, self.classes, self.includes = [], [], set(), {}
        for path in sorted((self.root / folder).rglob("*"), key=lambda p: (p.suffix != ".h", p)):
            if path.suffix in (".h", ".cpp"):
                self.includes[str(path.relative_to(root))] = INCLUDE.findall(path.read_text())
                tokens = tokens_of(path, self.root)
                self._read(tokens, 0, len(tokens), [])

    def _read(self, tokens, index, end, scopes):
        start = index
        while index < end:
            text = tokens[index].text
            is_access = text == ":" and tokens[index - 1].text in ("public", "private", "protected")
            if text == ";" or is_access:
                self._declare(tokens[start:index], scopes)
                start = index + 1
            elif text == "{":
                close = closing(tokens, index)
                head = tokens[start:index]
                if self._open(tokens, head, index, close, scopes):
                    start = close + 1
                index = close
            elif text in CLOSERS:
                index = closing(tokens, index)
            index += 1

    def _open(self, tokens, head, index, close, scopes):
        """Reads what a brace holds. False where the declaration goes on behind it."""
        outside = [text for _, text in head_at_depth_0(head)]
        template_end = closing_angle(head, 1) + 1 if outside[:1] == ["template"] else 0
        first = head[template_end].text if len(head) > template_end else ""
        if first in ("namespace", "extern") and "=" not in outside:
            names = [token.text for token in head[1:] if token.is_name]
            self._read(tokens, index + 1, close, [*scopes, ("namespace", "::".join(names))])
            return True
        if first in SCOPES:
            own = outside[: outside.index(":")] if ":" in outside else outside  # not those of its bases
            name = [text for text in own if is_name(text)][-1]
            if first != "enum":
                self.classes.add(name)
                self._read(tokens, index + 1, close, [*scopes, ("class", name)])
            return False
        is_member_initialiser = ":" in outside and (head[-1].is_name or head[-1].text == ">")
        if "(" not in [token.text for token in head] or is_member_initialiser:
            return False
        if "=" in outside and "operator" not in outside:
            return False
        self._define(head, tokens[index + 1 : close], scopes)
        return True

    def _define(self, head, body, scopes):
        template, start = [], 0
        if head[0].text == "template":
            start = closing_angle(head, 1) + 1
            template = [parameter(part)[0] for part in split_at_commas(head[2 : start - 1])]
        opening = next(
            (i for i in range(start + 1, len(head)) if head[i].text == "(" and head[i - 1].is_name), None
        )
        if opening is None:  # an operator
            opening = next(i for i in range(start, len(head)) if head[i].text == "(")
        close = closing(head, opening)
        name = head[opening - 1].text
        owner = next((name for kind, name in reversed(scopes) if kind == "class"), "")
        if head[opening - 2].text == "::" and head[opening - 3].text in self.classes:
            owner = head[opening - 3].text
        parameters = [parameter(part) for part in split_at_commas(head[opening + 1 : close])]
        is_local = ("namespace", "") in scopes
        if body is not None:  # what constructs the members belongs to it
            body = head[close + 1 :] + body
        self.functions.append(
            Function(name, owner, head[0].file, is_local, template, parameters, body)
        )

    def _declare(self, head, scopes):
        outside = [text for _, text in head_at_depth_0(head)]
        if not head or {"using", "friend", "static_assert", *SCOPES} & set(outside):
            return
        for index, text in head_at_depth_0(head):
            if text in ("=", "{", "[") and head[index - 1].is_name:
                name = head[index - 1].text
                is_tag = "Tag" in outside and text == "{"
                self.variables.append(Variable(name, head[0].file, is_tag, head[index:]))
                return
            if text == "(" and head[index - 1].is_name:
                if outside[-1] not in ("delete", "default"):
                    self._define(head, None, scopes)
                return
