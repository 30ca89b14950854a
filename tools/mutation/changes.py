"""The changes that are tried in function bodies and initial values, one generator a kind."""

import re

from clang.cindex import CursorKind as Kind, TypeKind

from source import FUNCTIONS, LOG_INCLUDE

LOG = {"QIVO_LOG_ERROR": "QIVO_LOG_WARN", "QIVO_LOG_WARN": "QIVO_LOG_INFO",
       "QIVO_LOG_INFO": "QIVO_LOG_ERROR", "QIVO_LOG_MARK": "QIVO_LOG_BEGIN",
       "QIVO_LOG_BEGIN": "QIVO_LOG_END", "QIVO_LOG_END": "QIVO_LOG_MARK"}
OTHER_WORD = {
    "true": "false", "false": "true", "EINA_TRUE": "EINA_FALSE", "EINA_FALSE": "EINA_TRUE",
    "EVAS_HINT_EXPAND": "0.5", "EVAS_HINT_FILL": "0.5", "ECORE_CALLBACK_PASS_ON":
    "ECORE_CALLBACK_DONE", "EVAS_CALLBACK_PRIORITY_BEFORE": "EVAS_CALLBACK_PRIORITY_AFTER",
    "ECORE_EVENT_KEY_UP": "ECORE_EVENT_KEY_DOWN", "__func__": '"f"', "DLOG_ERROR": "DLOG_WARN",
    "DLOG_WARN": "DLOG_INFO", "DLOG_INFO": "DLOG_DEBUG", "LOG_ID_MAIN": "LOG_ID_SYSTEM",
    "APP_CONTROL_RESULT_SUCCEEDED": "APP_CONTROL_RESULT_FAILED",
    "APP_CONTROL_RESULT_FAILED": "APP_CONTROL_RESULT_SUCCEEDED"}
OTHER_OPERATOR = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">",
                  "&&": "||", "||": "&&", "+": "-", "-": "+", "+=": "="}
POINTERS = (TypeKind.POINTER, TypeKind.OBJCOBJECTPOINTER)
STATEMENT_LISTS = (Kind.COMPOUND_STMT,)


def statement_lists(source):
    for cursor in source.cursors:
        if cursor.kind in STATEMENT_LISTS:
            yield [(child, source.statement(child)) for child in cursor.get_children()]


def function_of(source, cursor):
    function = source.enclosing(source.extent(cursor)[0])
    return function if function is not None and function.kind in FUNCTIONS else None


def is_macro_call(source, cursor):
    return source.words(cursor).startswith("QIVO_LOG_")


def calls(text):
    """Whether a statement calls anything; a cast of a name is no call."""
    return "(" in re.sub(r"static_cast<[^>]*>\(\w+\)", "", text)


def left_out(source):
    for statements in statement_lists(source):
        for i, (child, (begin, end)) in enumerate(statements):
            gives = child.kind == Kind.RETURN_STMT and list(child.get_children())
            is_last = i == len(statements) - 1
            if child.kind != Kind.DECL_STMT and not (gives and is_last):
                yield source.mutant("statement left out", (begin, end, ""))


def said_twice(source):
    for statements in statement_lists(source):
        for child, (begin, end) in statements:
            text = source.text[begin:end]
            is_plain = child.kind not in (Kind.DECL_STMT, Kind.RETURN_STMT, Kind.IF_STMT)
            if is_plain and calls(text) and not text.startswith(("throw", "Throw")):
                yield source.mutant("statement said twice", (end, end, " " + text))


def swapped_neighbours(source):
    """Two neighbours in the other order, unless neither calls anything."""
    for statements in statement_lists(source):
        for (first, (a, b)), (second, (c, d)) in zip(statements, statements[1:]):
            one, other = source.text[a:b], source.text[c:d]
            is_free = not calls(one) and not calls(other)
            is_free |= first.kind == Kind.DECL_STMT and not calls(one)
            is_free |= second.kind == Kind.DECL_STMT and not calls(other)
            names = [child.spelling for child in first.get_children()
                     if first.kind == Kind.DECL_STMT]
            needs = any(re.search(rf"\b{name}\b", other) for name in names)
            if second.kind != Kind.RETURN_STMT and not is_free and not needs:
                yield source.mutant("neighbours swapped", (a, b, other), (c, d, one))


def conditions(source):
    """The conditions of if, while, for and ?:, as extents."""
    for cursor in source.cursors:
        children = list(cursor.get_children())
        if cursor.kind in (Kind.IF_STMT, Kind.WHILE_STMT, Kind.CONDITIONAL_OPERATOR) and children:
            yield source.extent(children[0]), children[0]
        elif cursor.kind == Kind.FOR_STMT and len(children) >= 3:
            yield source.extent(children[1]), children[1]


def other_conditions(source):
    for (begin, end), condition in conditions(source):
        text = source.text[begin:end]
        if condition.kind in (Kind.DECL_STMT, Kind.VAR_DECL):
            continue
        yield source.mutant("condition negated", (begin, end, f"!({text})"))
        yield source.mutant("condition never", (begin, end, "false"))
        yield source.mutant("condition always", (begin, end, "true"))


def dropped_operands(source):
    for cursor in source.cursors:
        if cursor.kind != Kind.BINARY_OPERATOR:
            continue
        left, right = list(cursor.get_children())
        (begin, middle), (after, end) = source.extent(left), source.extent(right)
        sign = source.text[middle:after].strip()
        if sign in ("&&", "||"):
            yield source.mutant("left operand dropped", (begin, after, ""))
            yield source.mutant("right operand dropped", (middle, end, ""))
        if sign in OTHER_OPERATOR:
            at = source.text.index(sign, middle)
            yield source.mutant("operator altered", (at, at + len(sign), OTHER_OPERATOR[sign]))


def dropped_negations(source):
    """Inside of a condition; the whole of one is negated above."""
    whole = {extent for extent, _ in conditions(source)}
    for cursor in source.cursors:
        begin, end = source.extent(cursor)
        is_negation = cursor.kind == Kind.UNARY_OPERATOR and source.text[begin:end][:1] == "!"
        if is_negation and (begin, end) not in whole:
            yield source.mutant("negation dropped", (begin, begin + 1, ""))


def altered_numbers(source):
    for token in source.tokens:
        begin, end = source.extent(token)
        number = re.fullmatch(r"(\d+)", token.spelling)
        if number:
            yield source.mutant("number altered", (begin, end, str(int(token.spelling) + 1)))
            if int(token.spelling) > 0:
                yield source.mutant("number altered", (begin, end, str(int(token.spelling) - 1)))
        elif re.fullmatch(r"\d+\.\d+", token.spelling):
            yield source.mutant("number altered", (begin, end, token.spelling + "5"))


def altered_words(source):
    for token in source.tokens:
        begin, end = source.extent(token)
        word = token.spelling
        is_defined = source.text[:begin].endswith("#define ")
        if word in OTHER_WORD:
            yield source.mutant("constant altered", (begin, end, OTHER_WORD[word]))
        elif word in LOG and not is_defined:
            other = LOG[word]
            yield source.mutant("log class altered", (begin, end, other))


def neighbour_constants(source):
    for cursor in source.cursors:
        constant = cursor.referenced if cursor.kind == Kind.DECL_REF_EXPR else None
        if constant is None or constant.kind != Kind.ENUM_CONSTANT_DECL:
            continue
        names = [c.spelling for c in constant.semantic_parent.get_children()]
        begin, end = source.extent(cursor)
        if source.text[begin:end] == constant.spelling and constant.spelling not in OTHER_WORD:
            other = names[(names.index(constant.spelling) + 1) % len(names)]
            yield source.mutant("constant altered", (begin, end, other))


def altered_texts(source):
    for token in source.tokens:
        begin, end = source.extent(token)
        line = source.text[source.text.rfind("\n", 0, begin) + 1:begin]
        if token.spelling[:1] != '"' or "#include" in line:
            if re.fullmatch(r"'\w|'&'|'\\?.'", token.spelling):
                yield source.mutant("character altered", (begin, end, "'#'"))
            continue
        yield from altered_text(source, begin + 1, end - 1)


def altered_text(source, begin, end):
    text = source.text[begin:end]
    letters = [i for i in range(len(text)) if text[i].isalpha() and text[i - 1:i] != "\\"
               and text[i - 1:i] != "%" and not re.search(r"\\\d*$|%[\d.]*$", text[:i])]
    for i in letters[len(letters) // 2:len(letters) // 2 + 1]:
        other = "b" if text[i] == "a" else "a"
        yield source.mutant("text altered", (begin + i, begin + i + 1, other))
    yield source.mutant("text altered", (end, end, " "))


def arguments(source):
    """Each call with the extents and the declared kinds of its arguments."""
    for cursor in source.cursors:
        if cursor.kind != Kind.CALL_EXPR or is_macro_call(source, cursor):
            continue
        given = [a for a in cursor.get_arguments() if a is not None and source.words(a)]
        begin, end = source.extent(cursor)
        inside = [a for a in given if begin <= source.extent(a)[0] and source.extent(a)[1] < end]
        yield cursor, [(source.extent(a), a) for a in inside]


def kind_of(node):
    return node.type.get_canonical().spelling.replace("const ", "").rstrip("&").strip()


def swapped_arguments(source):
    for _, given in arguments(source):
        for i, ((a, b), first) in enumerate(given):
            for (c, d), second in given[i + 1:]:
                if kind_of(first) == kind_of(second) and b <= c:
                    yield source.mutant("arguments swapped", (a, b, source.text[c:d]),
                                        (c, d, source.text[a:b]))


def other_arguments(source):
    for cursor, given in arguments(source):
        for (begin, end), argument in given:
            text = source.text[begin:end]
            is_pointer = argument.type.get_canonical().kind in POINTERS
            if is_pointer and text != "nullptr" and not text.startswith('"'):
                yield source.mutant("argument null", (begin, end, "nullptr"))
            if argument.type.get_canonical().kind == TypeKind.BOOL and text.isidentifier():
                yield source.mutant("argument negated", (begin, end, f"!{text}"))
            yield from other_objects(source, cursor, argument, begin, end)


def other_objects(source, cursor, argument, begin, end):
    """Another available object of the same kind in its place."""
    text = source.text[begin:end]
    function = function_of(source, cursor)
    if function is None or not text.isidentifier() or text in OTHER_WORD:
        return
    at_hand = [c for c in function.walk_preorder()
               if c.kind in (Kind.PARM_DECL, Kind.VAR_DECL) and source.extent(c)[1] < begin]
    owner = function.semantic_parent
    at_hand += [c for c in owner.get_children() if c.kind in (Kind.FIELD_DECL, Kind.VAR_DECL)]
    own = [kind_of(c) for c in at_hand if c.spelling == text]
    others = [c.spelling for c in at_hand if c.spelling and c.spelling != text
              and own and kind_of(c) == own[0]]
    for other in sorted(set(others))[:1]:
        yield source.mutant("argument another object", (begin, end, other))


def other_log_arguments(source):
    for found in re.finditer(r'QIVO_LOG_(?:ERROR|WARN|INFO)\(\s*"([^"]*%[^"]*)",\s*', source.text):
        begin, end = found.end(), source.text.index(");", found.end())
        given = split_arguments(source.text, begin, end)
        for (first, last), sign in zip(given, re.findall(r"%([spd])", found[1])):
            text = source.text[first:last]
            other = {"s": '"other"', "p": "nullptr", "d": f"({text}) + 1"}[sign]
            yield source.mutant("log argument altered", (first, last, other))
        for (a, b), (c, d) in zip(given, given[1:]):
            yield source.mutant("log arguments swapped", (a, b, source.text[c:d]),
                                (c, d, source.text[a:b]))


def split_arguments(text, begin, end):
    parts, depth, start = [], 0, begin
    for i in range(begin, end):
        depth += {"(": 1, "<": 1, ")": -1, ">": 0 if text[i - 1] == "-" else -1}.get(text[i], 0)
        if text[i] == "," and depth == 0:
            parts.append((start, i))
            start = i + 1 + (len(text[i + 1:end]) - len(text[i + 1:end].lstrip()))
    return parts + [(start, end)]


def other_results(source):
    for cursor in source.cursors:
        children = list(cursor.get_children())
        if cursor.kind != Kind.RETURN_STMT or not children:
            continue
        function = function_of(source, cursor)
        begin, end = source.extent(children[0])
        if function is None or begin == end:
            continue
        result, text = function.result_type.get_canonical(), source.text[begin:end]
        if result.kind in (TypeKind.BOOL, TypeKind.UCHAR):
            yield source.mutant("result altered", (begin, end, f"!({text})"))
        elif result.kind in POINTERS and text != "nullptr":
            yield source.mutant("result altered", (begin, end, "nullptr"))
        elif result.kind in (TypeKind.INT, TypeKind.UINT, TypeKind.LONGLONG, TypeKind.ULONG):
            yield source.mutant("result altered", (begin, end, f"({text}) + 1"))
        elif "basic_string" in result.spelling:
            yield source.mutant("result altered", (begin, end, f'std::string({text}) + "x"'))
        elif text not in ("nullptr", "{}"):
            yield source.mutant("result altered", (begin, end, "{}"))


def other_initial_values(source):
    for cursor in source.cursors:
        if cursor.kind not in (Kind.FIELD_DECL, Kind.VAR_DECL):
            continue
        values = [c for c in cursor.get_children() if c.kind.is_expression()]
        words = source.words(cursor)
        if not values or "=" not in words:
            continue
        begin = source.extent(cursor)[0] + words.index("=") + 1
        end = source.extent(cursor)[1]
        kind = cursor.type.get_canonical()
        pointer = source.text[begin:end].strip() == "nullptr"
        if pointer and kind.kind in POINTERS:
            value = f" reinterpret_cast<decltype({cursor.spelling})>(16)"
            yield source.mutant("initial value altered", (begin, end, value))
        elif not pointer and source.text[begin:end].strip() not in ("false", "0", '""'):
            yield source.mutant("initial value altered", (begin, end, " {}"))


def copies_as_references(source):
    for cursor in source.cursors:
        if cursor.kind != Kind.VAR_DECL or cursor.type.get_canonical().kind != TypeKind.RECORD:
            continue
        found = re.fullmatch(r"(.*?)(\s*)(\w+)( = [\w.>()*-]+)", source.words(cursor), re.DOTALL)
        if found and "(" not in found[4]:
            at = source.extent(cursor)[0] + len(found[1])
            const = "" if found[1].startswith("const ") else "const "
            yield source.mutant("copy as reference", (source.extent(cursor)[0],) * 2 + (const,),
                                (at, at, "&"))


def added_checks(source):
    """A silent null check where there was none, for parameters and results of calls.

    Not for what the function dereferences anyway: null is undefined behaviour there.
    """
    for cursor in source.cursors:
        function = function_of(source, cursor)
        if cursor.kind not in (Kind.PARM_DECL, Kind.VAR_DECL) or function is None:
            continue
        body = [source.extent(c) for c in function.get_children() if c.kind == Kind.COMPOUND_STMT]
        words = source.words(cursor)
        if not body or not testable(cursor) or "catch" in source.text[:body[0][1]][-99:]:
            continue
        is_parameter = cursor.kind == Kind.PARM_DECL
        text = source.text[body[0][0]:body[0][1]]
        if (not is_parameter and "(" not in words) or looks_into(text, cursor.spelling):
            continue
        at = (body[0][0] + 1 if is_parameter
              else source.text.index(";", source.extent(cursor)[1]) + 1)
        gives = function.result_type.kind != TypeKind.VOID and function.kind not in (
            Kind.CONSTRUCTOR, Kind.DESTRUCTOR)
        check = f" if (!{cursor.spelling}) return{' {}' if gives else ''};"
        yield source.mutant("null check added", (at, at, check))


def looks_into(text, name):
    """Whether a body dereferences an object, or what it casts it to, or already tests it."""
    cast = re.search(rf"(\w+) = static_cast<[^>]*>\({name}\)", text)
    names = [name] + ([cast[1]] if cast else [])
    silent = rf"if \(!{name}\)\s*\{{\s*return[^;]*;"
    if re.search(silent, text) or (cast and re.search(silent.replace(name, cast[1]), text)):
        return True
    if re.search(rf"if \({name}\)", text):
        return True
    is_tested = any(f"!{n})" in text for n in names)
    return not is_tested and any(f"{n}->" in text or f"*{n}" in text or f"{n}[" in text
                                 or f">({name})->" in text for n in names)


def testable(cursor):
    kind = cursor.type.get_canonical()
    return bool(cursor.spelling) and (kind.kind in POINTERS or "shared_ptr" in kind.spelling)


def added_lines(source):
    if source.path.endswith("/Log.h"):
        return
    for cursor in source.cursors:
        if cursor.kind in FUNCTIONS and cursor.is_definition():
            body = [c for c in cursor.get_children() if c.kind == Kind.COMPOUND_STMT]
            for begin in [source.extent(b)[0] + 1 for b in body]:
                yield source.mutant("log line added", (0, 0, LOG_INCLUDE),
                                    (begin, begin, " QIVO_LOG_MARK();"))


ALL = (left_out, said_twice, swapped_neighbours, other_conditions, dropped_operands,
       dropped_negations, altered_numbers, altered_words, neighbour_constants, altered_texts,
       swapped_arguments, other_arguments, other_log_arguments, other_results,
       other_initial_values, copies_as_references, added_checks, added_lines)
