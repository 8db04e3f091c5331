"""C++ text as the rules see it: without comments and literals, and with its functions found."""
import bisect
import re
from dataclasses import dataclass

RAW_STRING = re.compile(r'(?:u8|[uUL])?R"([^ ()\\\t\v\f\n]{0,16})\(')
SEPARATED_NUMBER = re.compile(r"(?<![\w'])(?:0[xXbB])?[0-9][0-9a-fA-F]*(?:'[0-9a-fA-F]+)+")


def _blank(text):
    """The same number of lines, nothing on them."""
    return "\n" * text.count("\n")


def _end_of_literal(text, start):
    """Index behind a literal whose quote stands at start; a line's end closes a broken one."""
    quote = text[start]
    i = start + 1
    while i < len(text) and text[i] not in (quote, "\n"):
        i += 2 if text[i] == "\\" else 1
    return min(i + 1, len(text)) if i < len(text) and text[i] == quote else i


def strip(text):
    """The code alone: comments and preprocessor lines go, literals become "" or '', lines stay."""
    text = SEPARATED_NUMBER.sub(lambda number: number.group().replace("'", ""), text)
    out = []
    i = 0
    line_is_blank = True  # so far
    while i < len(text):
        c = text[i]
        raw = RAW_STRING.match(text, i) if c in "uULR" else None
        if raw and not (i > 0 and (text[i - 1].isalnum() or text[i - 1] == "_")):
            end = text.find(")" + raw.group(1) + '"', raw.end())
            end = len(text) if end < 0 else end + len(raw.group(1)) + 2
            out.append('""' + _blank(text[i:end]))
        elif text.startswith("//", i) or (c == "#" and line_is_blank):
            end = i
            while end < len(text) and text[end] != "\n":
                end += 2 if text[end] == "\\" and text[end + 1:end + 2] == "\n" else 1
            out.append(_blank(text[i:end]))
        elif text.startswith("/*", i):
            end = text.find("*/", i + 2)
            end = len(text) if end < 0 else end + 2
            out.append(" " + _blank(text[i:end]))
            i = end
            continue
        elif c in "\"'":
            end = _end_of_literal(text, i)
            out.append(c + c + _blank(text[i:end]))
        else:
            out.append(c)
            end = i + 1
        if c == "\n":
            line_is_blank = True
        elif not c.isspace():
            line_is_blank = False
        i = end
    return "".join(out)


@dataclass
class Function:
    name: str
    line: int    # of the first line of its declaration, from 1
    lines: int   # from there to the closing brace


LABEL = re.compile(r"\s*(?:public|private|protected)\s*:(?!:)")
SCOPE = re.compile(r"(?:inline\s+)?namespace\b|extern\s*\"\"|(?:typedef\s+)?(?:class|struct|union|enum)\b")
ATTRIBUTE = re.compile(r"\[\[.*?\]\]|\balignas\s*\([^()]*\)", re.S)
LAMBDA = re.compile(r"[=,({]\s*\[[^\[\]]*\]\s*(?:\([^()]*\)\s*)?(?:mutable\s*|noexcept\s*|->[\w:<>,\s*&]+)*$")
MEMBER_INITIALISERS = re.compile(r"\)[^;(){}]*(?<!:):(?!:)")
NAME = re.compile(r"(operator\s*[^\s\w(]+|operator\s*\(\)|[~\w:]+)\s*\(")


def _without_template_head(head):
    while True:
        head = head.lstrip()
        match = re.match(r"template\s*<", head)
        if not match:
            return head
        depth, i = 1, match.end()
        while i < len(head) and depth > 0:
            depth += {"<": 1, ">": -1}.get(head[i], 0)
            i += 1
        head = head[i:]


def _kind_of_brace(head, inside_value):
    """What a brace outside of functions opens: "scope", "function" or "value"."""
    if LAMBDA.search(head):
        return "function"
    declaration = _without_template_head(ATTRIBUTE.sub("", head)).strip()
    before_parameters, parenthesis, _ = declaration.partition("(")
    if inside_value or declaration.count("(") > declaration.count(")"):
        return "value"  # an element, an argument or a default argument
    if SCOPE.match(declaration):
        # A type may stand in front of a function's name as well: struct T f() {
        return "function" if re.search(r"\w\s*\([^()]*\)\s*(?:const\s*)?$", declaration) else "scope"
    if not parenthesis or ("=" in before_parameters and "operator" not in before_parameters):
        return "value"
    if MEMBER_INITIALISERS.search(declaration) and re.search(r"[\w>]$", declaration):
        return "value"  # the initialiser of one member
    return "function"


def functions(text):
    """The functions of a file, outermost braces only: a lambda counts with the function around it."""
    code = strip(text)
    found = []
    scopes = []         # (kind, where the declaration in front of the brace began)
    start = 0           # of the declaration being read
    in_function = 0     # depth of braces inside a function
    line_starts = [0] + [m.end() for m in re.finditer("\n", code)]

    def line_of(index):
        return bisect.bisect_right(line_starts, index)

    for match in re.finditer(r"[{};]", code):
        at, sign = match.start(), match.group()
        if in_function:
            in_function += {"{": 1, "}": -1, ";": 0}[sign]
            if in_function == 0:
                first = line_of(start)
                name = NAME.search(_without_template_head(code[start:at]))  # the head's comes first
                found.append(Function(name.group(1) if name else "?", first, line_of(at) - first + 1))
                start = at + 1
        elif sign == "{":
            while label := LABEL.match(code, start, at):
                start = label.end()
            start += len(code[start:at]) - len(code[start:at].lstrip())
            kind = _kind_of_brace(code[start:at], bool(scopes) and scopes[-1][0] == "value")
            if kind == "function":
                in_function = 1
            else:
                scopes.append((kind, start))
                start = start if kind == "value" else at + 1
        elif sign == "}":
            kind, began = scopes.pop() if scopes else ("scope", at)
            start = began if kind == "value" else at + 1
        elif not (scopes and scopes[-1][0] == "value"):
            start = at + 1
    return found
