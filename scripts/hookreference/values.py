"""What the names in a function's body stand for.

The value of an expression is the set of all constants that its names lead to: through parameters,
variables, tables and what functions return. It may be too large where a tag is chosen from a table; it
is never too small.
"""

import dataclasses
import re

from hookreference.source import CLOSERS, closing, closing_angle, split_at_commas
from hookreference.vocabulary import METADATA, STATIC, UNNAMED, Value

KEYWORDS = {"return", "case", "else", "new", "delete", "typename", "const", "throw"}


@dataclasses.dataclass
class Local:
    is_tag: bool
    initialiser: list


class Body:
    """A function's body, or a table's initialiser, under what the function's parameters stand for."""

    def __init__(self, library, function, tokens, bound, step):
        self.library, self.function, self.tokens = library, function, tokens
        self.bound, self.step = bound, step
        self.locals = local_initialisers(tokens)
        self.evaluating = set()

    def value(self, tokens):
        found, index = set(), 0
        while index < len(tokens):
            token, before = tokens[index], tokens[index - 1].text if index > 0 else ""
            end = call_end(tokens, index)
            callees = self.callees(tokens, index) if end else []
            if callees or (end and self.is_data(token)):
                found |= self.returned(callees, tokens, index)
                index = end
            elif token.is_text:
                found.add(Value("text", token.text[1:-1], self.step, token))
            elif before == "::" and tokens[index - 2].text == "tags":
                found.add(Value("tag", token.text, self.step, token))
            elif token.is_name and before not in (".", "->"):
                found |= self.named(token)
            index += 1
        return frozenset(found)

    def is_data(self, token):
        """Whether a call gives data of the phone: no constant, whatever its arguments are."""
        return token.text in METADATA or token.text in self.library.operations

    def callees(self, tokens, index):
        """The library's functions that the name at `index` may be."""
        before, qualifier = (tokens[index - k].text if index >= k else "" for k in (1, 2))
        name = tokens[index].text
        found = self.library.candidates(name, before, qualifier, self.function)
        after = tokens[index + 1] if index + 1 < len(tokens) else None
        is_made = after is not None and (after.is_name or after.text in ("(", "{"))
        return found or (self.library.constructors(name) if is_made else [])

    def named(self, token):
        """What a variable stands for."""
        name = token.text
        found = set(self.bound.get(name, ()))
        if name in self.evaluating:
            return found
        variables = self.locals.get(name, [])
        if not variables and name not in self.bound:
            variables = self.library.variable(name, self.function.file)
        self.evaluating.add(name)
        for variable in variables:
            found |= self.tag_constant(variable, token) or self.value(variable.initialiser)
        self.evaluating.discard(name)
        return found

    def tag_constant(self, variable, token):
        """A tag that the catalogue does not list goes by its value."""
        numbers = [t.text for t in variable.initialiser if re.match("0x[0-9a-f]{8}$", t.text)]
        is_tag = variable.is_tag and len(numbers) == 1
        return {Value("tag", numbers[0], self.step, token)} if is_tag else set()

    def returned(self, callees, tokens, index):
        """What the functions that the name at `index` may be return."""
        if tokens[index].text == "getStaticCharacteristics":
            return {Value("container", STATIC)}
        found = set()
        arguments, template = call_arguments(tokens, index)
        for callee in callees:
            if id(callee) in self.evaluating:
                continue
            self.evaluating.add(id(callee))
            bound = self.bind(callee, template, arguments)
            body = Body(self.library, callee, callee.body, bound, self.step)
            body.evaluating = self.evaluating
            for start, token in enumerate(callee.body):
                if token.text == "return":
                    found |= body.value(until(callee.body, start + 1, ";"))
            self.evaluating.discard(id(callee))
        return found

    def bind(self, function, template, arguments):
        """What the parameters of a function stand for in a call, or without arguments in a call by
        whoever holds its address."""
        names = [name for name, _ in function.parameters]
        bound = {name: self.value(part) for name, part in zip(function.template, template)}
        if arguments is not None:
            return bound | {name: self.value(part) for name, part in zip(names, arguments)}
        unnamed = frozenset([Value("container", UNNAMED)])
        return bound | {name: unnamed for name, words in function.parameters if "IMetadata" in words}


def call_arguments(tokens, index):
    """The arguments behind the name at `index`, and those of its template; None where it is no call."""
    at, template = index + 1, []
    if at < len(tokens) and tokens[at].text == "<":
        end = closing_angle(tokens, at)
        if end is None:
            return None, []
        template, at = split_at_commas(tokens[at + 1 : end]), end + 1
    if at < len(tokens) and tokens[at].is_name:  # a variable is made
        at += 1
    if at < len(tokens) and tokens[at].text in ("(", "{"):
        return split_at_commas(tokens[at + 1 : closing(tokens, at)]), template
    return None, template


def call_end(tokens, index):
    """The index of the bracket that ends the call of the name at `index`, None where it is no call."""
    at = index + 1
    if not tokens[index].is_name or at == len(tokens):
        return None
    if tokens[at].text == "<":
        at = (closing_angle(tokens, at) or len(tokens)) + 1
    return closing(tokens, at) if at < len(tokens) and tokens[at].text == "(" else None


def until(tokens, index, *ends):
    """The tokens from `index` up to one of `ends`, or the end of the brackets around."""
    start, depth = index, 0
    while index < len(tokens):
        text = tokens[index].text
        if depth == 0 and (text in ends or text in CLOSERS.values()):
            break
        depth += (text in CLOSERS) - (text in CLOSERS.values())
        index += 1
    return tokens[start:index]


def local_initialisers(tokens):
    """What the variables of a body are made of or assigned, by their names."""
    found = {}
    for index, token in enumerate(tokens[1:], 1):
        text, before = token.text, tokens[index - 1]
        names, is_tag = [before] if before.is_name else [], False
        if text in ("=", ":") and before.text == "]":  # a structured binding
            opening = max(i for i in range(index) if tokens[i].text == "[")
            names = [t for t in tokens[opening + 1 : index - 1] if t.is_name]
        if text in ("{", "(") and names and is_declared(tokens, index - 1):
            initialiser = tokens[index + 1 : closing(tokens, index)]
            is_tag = "Tag" in [t.text for t in tokens[max(0, index - 8) : index - 1]]
        elif text == "=" or (text == ":" and is_range_for(tokens, index)):
            initialiser = until(tokens, index + 1, ";", ",")
        else:
            continue
        for name in names:
            found.setdefault(name.text, []).append(Local(is_tag, initialiser))
    return found


def is_declared(tokens, index):
    """Whether a type stands before the name at `index`."""
    before = tokens[index - 1] if index > 0 else None
    ends_type = before is not None and (before.is_name or before.text in (">", "*", "&"))
    return ends_type and before.text not in KEYWORDS


def is_range_for(tokens, index):
    """Whether the colon at `index` stands in the head of a for loop."""
    texts = [token.text for token in tokens[max(0, index - 16) : index]]
    return "for" in texts and not {";", "?"} & set(texts[len(texts) - texts[::-1].index("for") :])
