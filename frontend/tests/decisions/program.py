"""Random C programs of decisions: a tree of expressions and statements, printed as C, with the items that a description
of it has, and run by an interpreter that counts what is hit.

Three passes over one tree: print() writes the text and remembers where each node stands, describe() makes the items,
run() and value() interpret. Everything that C leaves open is kept out when a tree is made (see Maker in make.py), so that all
compilers agree with the interpreter.

An item is (keyword, what, service, text, first line, last line); a case has the texts of its conditions as text. Items
that look the same (the same condition twice in a line) are told apart by their order."""

import copy

INT_MAX = 2147483647
STEPS = 30000  # of one run


class Reject(Exception):
    """The program runs too long, or does what C leaves undefined."""


class Break(Exception):
    pass


class Continue(Exception):
    pass


class Leave(Exception):
    """A return, a jump by goto (a label), by longjmp, or the end of the program."""

    def __init__(self, way, value=None):
        super().__init__()
        self.way, self.what = way, value


class Text:
    """The program's text as it is written, with lines broken where C allows it, now and then."""

    def __init__(self, random):
        self.random = random
        self.text = ""
        self.indent = 0
        self.breaks = random.choice([0, 0.02, 0.1])

    def put(self, text):
        self.text += text

    def blank(self):
        if self.random.random() < self.breaks:
            self.text += "\n" + " " * (4 * self.indent + 8)
        else:
            self.text += " "

    def line(self):
        self.text += "\n" + "    " * self.indent

    def line_of(self, offset):
        return self.text.count("\n", 0, offset) + 1


class Node:
    """start and end: offsets of the text, end exclusive."""

    def written(self, out):
        self.start = len(out.text)
        self.print(out)
        self.end = len(out.text)
        self.lines = (out.line_of(self.start), out.line_of(self.end - 1))
        self.spelled = " ".join(out.text[self.start:self.end].split())

    def place(self, lines, spelled=None):
        """Puts a node of a macro's body, and what is below it, where the macro is used."""
        if hasattr(self, "lines"):
            return self
        self.lines = lines
        self.spelled = spelled or getattr(self, "spelled", None)
        for value in list(vars(self).values()):
            for part in value if isinstance(value, (list, tuple)) else [value]:
                if isinstance(part, Node) and not isinstance(part, Function):
                    part.place(lines)
        return self

    def says(self, spelled):
        self.spelled = spelled
        return self


class Items:
    def __init__(self):
        self.counts = []  # [key, count]
        self.service = None

    def add(self, keyword, what, text, lines):
        self.counts.append([(keyword, what, self.service, text, *lines), 0])
        return len(self.counts) - 1


class Machine:
    """The interpreter's state."""

    def __init__(self, items):
        self.items = items
        self.globals = {}
        self.functions = {}
        self.output = ""
        self.steps = 0

    def hit(self, item):
        if item is not None:
            self.items.counts[item][1] += 1

    def step(self):
        self.steps += 1
        if self.steps > STEPS:
            raise Reject


def checked(value):
    if not -INT_MAX <= value <= INT_MAX:
        raise Reject
    return int(value)


# --- Expressions ---

PRECEDENCE = {",": 0, "=": 1, "?": 2, "||": 3, "&&": 4, "|": 5, "^": 6, "&": 7, "==": 8, "!=": 8, "<": 9, ">": 9, "<=": 9,
              ">=": 9, "+": 11, "-": 11, "*": 12, "%": 12}
UNARY, PRIMARY = 13, 15


class Expression(Node):
    """reads, writes: names of variables, OUT for output; calls, leaves: it may hit, it may not come back. truth: of a
    logical operator's, a comparison's or a _Bool's value; boolean: of type _Bool, which commas and statement expressions
    keep. constant: made of constants only."""
    precedence = PRIMARY
    truth = boolean = constant = hits = leaves = False
    reads = writes = frozenset()
    parts = ()
    decision = None  # this expression as a decision that stands elsewhere than in a condition

    def gather(self):
        """Takes over what the parts read and do."""
        for part in self.parts:
            self.reads |= part.reads
            self.writes |= part.writes
            self.hits |= part.hits
            self.leaves |= part.leaves
        return self

    def print_part(self, out, part, least):
        extra = out.random.random() < 0.08
        if part.precedence < least:
            extra = True
        twice = extra and out.random.random() < 0.05
        out.put("((" if twice else "(" if extra else "")
        part.written(out)
        out.put("))" if twice else ")" if extra else "")

    def describe(self, items):
        for part in self.parts:
            part.describe(items)


class Constant(Expression):
    constant = True

    def __init__(self, number, text=None):
        self.number, self.spelling = number, text or str(number)
        if number < 0:
            self.precedence = UNARY

    def print(self, out):
        out.put(self.spelling)

    def value(self, machine, frame):
        return self.number


class Variable(Expression):
    def __init__(self, name, truth=False):
        self.name, self.truth, self.boolean = name, truth, truth
        self.reads = frozenset([name])

    def print(self, out):
        out.put(self.name)

    def value(self, machine, frame):
        return (frame if self.name in frame else machine.globals)[self.name]

    def change(self, machine, frame, new):
        """Assigns new(old value); gives the old and the new value."""
        place = frame if self.name in frame else machine.globals
        old = place[self.name]
        changed = checked(new(old))
        place[self.name] = int(changed != 0) if self.truth else changed
        return old, place[self.name]


class Element(Expression):
    """An element of the global array `cells`, which has four; any number will do as index."""

    def __init__(self, index):
        self.parts = (index,)
        self.gather()
        self.reads |= {"cells"}

    def print(self, out):
        out.put("cells[")
        self.print_part(out, self.parts[0], 8)
        out.put(" & 3]")

    def value(self, machine, frame):
        return machine.globals["cells"][self.parts[0].value(machine, frame) & 3]

    def change(self, machine, frame, new):
        place = self.parts[0].value(machine, frame) & 3
        old = machine.globals["cells"][place]
        machine.globals["cells"][place] = checked(new(old))
        return old, machine.globals["cells"][place]


class Assignment(Expression):
    """operator: =, +=, -=, ++ or -- (behind), or "++x"."""
    precedence = PRECEDENCE["="]

    def __init__(self, target, operator, part=None):
        self.target, self.operator = target, operator
        self.parts = (target, part) if part else (target,)
        self.gather()
        self.truth = self.boolean = target.truth
        self.writes |= {"cells"} if isinstance(target, Element) else target.reads
        self.part = part
        if not part:
            self.precedence = UNARY

    def print(self, out):
        if self.operator == "++x":
            out.put("++")
        self.target.written(out)
        if self.part:
            out.blank()
            out.put(self.operator + " ")
            self.print_part(out, self.part, 1)
        elif self.operator != "++x":
            out.put(self.operator)

    def value(self, machine, frame):
        part = self.part.value(machine, frame) if self.part else 1
        old, new = self.target.change(machine, frame, lambda old: part if self.operator == "=" else
                                      old - part if self.operator in ("-=", "--") else old + part)
        return old if self.operator in ("++", "--") else new


ARITHMETIC = {
    "+": lambda a, b: a + b, "-": lambda a, b: a - b, "*": lambda a, b: a * b,
    "%": lambda a, b: abs(a) % abs(b) * (-1 if a < 0 else 1),
    "<": lambda a, b: int(a < b), ">": lambda a, b: int(a > b), "<=": lambda a, b: int(a <= b), ">=": lambda a, b: int(a >= b),
    "==": lambda a, b: int(a == b), "!=": lambda a, b: int(a != b),
    "&": lambda a, b: a & b, "|": lambda a, b: a | b, "^": lambda a, b: a ^ b,
}
COMPARISONS = ("<", ">", "<=", ">=", "==", "!=")


class Binary(Expression):
    def __init__(self, operator, left, right):
        self.operator, self.parts = operator, (left, right)
        self.precedence = PRECEDENCE[operator]
        self.truth = operator in COMPARISONS
        self.constant = left.constant and right.constant
        self.gather()

    def print(self, out):
        self.print_part(out, self.parts[0], self.precedence)
        out.blank()
        out.put(self.operator + " ")
        self.print_part(out, self.parts[1], self.precedence + 1)

    def value(self, machine, frame):
        left, right = (part.value(machine, frame) for part in self.parts)
        return checked(ARITHMETIC[self.operator](left, right))


class Logical(Binary):
    """&&, ||, or &, |, ^ of truth values: a decision wherever it stands. kind: whether it stops early."""

    def __init__(self, operator, left, right):
        super().__init__(operator, left, right)
        self.truth = self.hits = True
        self.constant = False
        self.kind = "early" if operator in ("&&", "||") else "all"

    def describe(self, items):
        self.decision = Decision(self, items)

    def value(self, machine, frame):
        return int(self.decision.outcome(machine, frame))


class Not(Expression):
    precedence = UNARY
    truth = True

    def __init__(self, part):
        self.parts = (part,)
        self.constant = part.constant
        self.gather()

    def print(self, out):
        out.put("!")
        self.print_part(out, self.parts[0], UNARY)

    def value(self, machine, frame):
        return int(self.parts[0].value(machine, frame) == 0)


class Expect(Expression):
    """__builtin_expect and its kin: looked through."""

    def __init__(self, part, probable):
        self.parts, self.probable = (part,), probable
        self.gather()

    def print(self, out):
        out.put("__builtin_expect(")
        self.print_part(out, self.parts[0], 1)
        out.put(f", {self.probable})")

    def value(self, machine, frame):
        return self.parts[0].value(machine, frame)


class Cast(Expression):
    """To _Bool, short or long: not looked through."""
    precedence = UNARY

    def __init__(self, type_name, part):
        self.type_name, self.parts = type_name, (part,)
        self.truth = self.boolean = type_name == "_Bool"
        self.constant = part.constant
        self.gather()

    def print(self, out):
        out.put(f"({self.type_name})")
        self.print_part(out, self.parts[0], UNARY)

    def value(self, machine, frame):
        value = self.parts[0].value(machine, frame)
        if self.type_name == "short" and not -32768 <= value <= 32767:
            raise Reject
        return int(value != 0) if self.truth else value


class SizeOf(Expression):
    """Not evaluated, not described. Its operand is an int."""
    precedence = UNARY
    constant = True

    def __init__(self, part):
        self.part = part

    def print(self, out):
        out.put("(int)sizeof(")
        self.print_part(out, self.part, 0)
        out.put(")")

    def describe(self, items):
        pass

    def value(self, machine, frame):
        return 4


class Member(Expression):
    """One of two members of a compound literal, which are both evaluated."""

    def __init__(self, first, second, name):
        self.parts, self.name = (first, second), name
        self.gather()

    def print(self, out):
        out.put("(struct pair){")
        self.print_part(out, self.parts[0], 1)
        out.put(",")
        out.blank()
        self.print_part(out, self.parts[1], 1)
        out.put("}." + self.name)

    def value(self, machine, frame):
        values = [part.value(machine, frame) for part in self.parts]
        return values[self.name == "second"]


class StatementExpression(Expression):
    """({ ... }): statements, some of which may leave, and a value."""
    hits = True

    def __init__(self, statements, result, parts):
        self.body = Block([*statements, Evaluate(result)])
        self.inner, self.result = statements, result
        self.truth = self.boolean = result.boolean
        for part in parts:
            self.reads |= part.reads
            self.writes |= part.writes
            self.leaves |= part.leaves

    def print(self, out):
        out.put("(")
        self.body.written(out)
        out.put(")")

    def describe(self, items):
        self.body.describe(items)

    def value(self, machine, frame):
        for statement in self.inner:
            statement.run(machine, frame)
        return self.result.value(machine, frame)


class Comma(Expression):
    precedence = PRECEDENCE[","]

    def __init__(self, first, second):
        self.parts = (first, second)
        self.truth = self.boolean = second.boolean
        self.gather()

    def print(self, out):
        self.print_part(out, self.parts[0], 0)
        out.put(",")
        out.blank()
        self.print_part(out, self.parts[1], 1)

    def value(self, machine, frame):
        self.parts[0].value(machine, frame)
        return self.parts[1].value(machine, frame)


class Choice(Expression):
    """c ? a : b, and c ?: b (middle None)."""
    precedence = PRECEDENCE["?"]

    def __init__(self, condition, middle, other):
        self.condition, self.middle, self.other = condition, middle, other
        self.parts = tuple(part for part in (condition, middle, other) if part)
        self.constant = all(part.constant for part in self.parts)
        self.gather()
        self.hits = True

    def print(self, out):
        self.print_part(out, self.condition, 3)
        out.blank()
        if self.middle:
            out.put("? ")
            self.print_part(out, self.middle, 1)
            out.blank()
            out.put(": ")
        else:
            out.put("?: ")
        self.print_part(out, self.other, 2)

    def describe(self, items):
        self.decision = Decision(self.condition, items)
        for part in self.parts[1:]:
            part.describe(items)

    def value(self, machine, frame):
        if self.decision.outcome(machine, frame):
            return self.middle.value(machine, frame) if self.middle else self.decision.raw
        return self.other.value(machine, frame)


class Call(Expression):
    """A call of a function of the program, by name or by a text that gives a pointer to it."""
    hits = True

    def __init__(self, function, arguments, text=None):
        self.function, self.parts, self.text = function, tuple(arguments), text or function.name
        self.gather()
        self.reads |= function.reads
        self.writes |= function.writes
        self.leaves |= function.leaves

    def print(self, out):
        out.put(self.text + "(")
        for i, part in enumerate(self.parts):
            if i:
                out.put(",")
                out.blank()
            self.print_part(out, part, 1)
        out.put(")")

    def describe(self, items):
        self.item = items.add("TA", "call", self.text, self.lines)
        self.way_out = items.add("TP", "term", "", self.lines) if self.function.never_returns else None
        super().describe(items)

    def value(self, machine, frame):
        machine.hit(self.item)
        arguments = [part.value(machine, frame) for part in self.parts]
        machine.hit(self.way_out)
        return self.function.call(machine, arguments)


class MacroUse(Expression):
    """The use of a macro whose body is an expression. template: given texts and copies of the arguments, the expansion, a
    tree whose own nodes are put where the use is; arguments may stand in it several times."""

    def __init__(self, name, template, arguments):
        self.name, self.template, self.parts = name, template, tuple(arguments)
        self.expansion = template(["?"] * len(self.parts), lambda number: self.parts[number])
        self.truth = self.expansion.truth
        self.gather()
        self.hits |= self.expansion.hits

    def print(self, out):
        out.put(self.name + "(")
        self.texts = []
        breaks, out.breaks = out.breaks, 0  # whose line an argument has is told by macros in one line
        for i, part in enumerate(self.parts):
            out.put(", " if i else "")
            start = len(out.text)
            self.print_part(out, part, 1)
            self.texts.append(out.text[start:])
        out.breaks = breaks
        out.put(")")

    def expand(self):
        self.expansion = self.template(self.texts, lambda number: copy.deepcopy(self.parts[number]))
        self.expansion.place(self.lines, self.spelled)  # a condition that is the whole use is spelled as the use

    def describe(self, items):
        self.expand()
        self.expansion.describe(items)

    def value(self, machine, frame):
        return self.expansion.value(machine, frame)


class Decision:
    """An expression as a decision: its basic conditions, and the cases of two or more of them that are not constant."""

    def __init__(self, expression, items):
        self.leaves = []
        self.tree = self.tree_of(expression, None)
        self.outcomes = [[items.add("TE", what, leaf.spelled, leaf.lines)
                          for what in (["constant"] if leaf.constant else ["true", "false"])] for leaf in self.leaves]
        self.cases = {}
        if len(self.leaves) > 1 and not any(leaf.constant for leaf in self.leaves):
            texts = tuple(leaf.spelled for leaf in self.leaves)
            lines = (self.leaves[0].lines[0], self.leaves[-1].lines[1])
            for case in sorted(self.all_cases()):
                self.cases[case] = items.add("TE", case, texts, lines)
        for leaf in self.leaves:
            leaf.describe(items)

    def tree_of(self, expression, kind):
        while isinstance(expression, (Expect, MacroUse)):
            if isinstance(expression, Expect):
                expression = expression.parts[0]
            else:
                expression.expand()
                expression = expression.expansion
        if isinstance(expression, Not):
            return ("!", self.tree_of(expression.parts[0], kind))
        if isinstance(expression, Logical) and kind in (None, expression.kind):
            return (expression.operator, *(self.tree_of(part, expression.kind) for part in expression.parts))
        self.leaves.append(expression)
        return len(self.leaves) - 1

    def all_cases(self):
        """Evaluates with every choice of outcomes for the conditions that evaluation comes to."""
        pending, cases = [{}], set()
        while pending:
            chosen = pending.pop()
            missing = []

            def leaf(number):
                if number not in chosen:
                    missing.append(number)
                    raise KeyError
                return chosen[number]

            try:
                cases.add(self.case(chosen, evaluate(self.tree, leaf)))
            except KeyError:
                pending += [{**chosen, missing[0]: outcome} for outcome in (True, False)]
        return cases

    def case(self, outcomes, whole):
        return "".join("TF"[not outcomes[i]] if i in outcomes else "X" for i in range(len(self.leaves))) + "=" + "TF"[not whole]

    def outcome(self, machine, frame):
        seen = {}

        def leaf(number):
            machine.step()
            self.raw = self.leaves[number].value(machine, frame)
            seen[number] = self.raw != 0
            machine.hit(self.outcomes[number][0 if seen[number] else -1])
            return seen[number]

        whole = evaluate(self.tree, leaf)
        if len(self.leaves) > 1 or self.tree != 0:
            self.raw = int(whole)
        if self.cases:
            machine.hit(self.cases[self.case(seen, whole)])
        return whole


def evaluate(tree, leaf):
    if isinstance(tree, int):
        return leaf(tree)
    operator, *parts = tree
    if operator == "!":
        return not evaluate(parts[0], leaf)
    left = evaluate(parts[0], leaf)
    if (operator == "&&" and not left) or (operator == "||" and left):
        return left
    right = evaluate(parts[1], leaf)
    return {"&&": right, "||": right, "&": left and right, "|": left or right, "^": left != right}[operator]


# --- Statements ---

class Statement(Node):
    """completes(ways): can control reach its end? ways: the break, continue and goto that can be reached so far."""

    def completes(self, ways):
        return True


class Evaluate(Statement):
    """An expression; with a declaration in front of it, an initialised variable."""

    def __init__(self, expression, declares=None):
        self.expression, self.declares = expression, declares

    def print(self, out):
        if self.declares:
            out.put(f"{self.declares[0]} {self.declares[1]} = ")
        self.expression.print_part(out, self.expression, 1 if self.declares else 0)
        out.put(";")

    def describe(self, items):
        self.expression.describe(items)

    def completes(self, ways):
        return not (isinstance(self.expression, Call) and self.expression.function.never_returns)

    def run(self, machine, frame):
        machine.step()
        value = self.expression.value(machine, frame)
        if self.declares:
            frame[self.declares[1]] = int(value != 0) if self.declares[0] == "_Bool" else value


class Declarations(Statement):
    """Several initialised variables in one declaration, or an array whose length is evaluated."""

    def __init__(self, names, parts, is_array=False):
        self.names, self.parts, self.is_array = names, parts, is_array

    def print(self, out):
        out.put("int ")
        for i, (name, part) in enumerate(zip(self.names, self.parts)):
            if i:
                out.put(",")
                out.blank()
            out.put(name + ("[" if self.is_array else " = "))
            part.print_part(out, part, 1)
            out.put("]" if self.is_array else "")
        out.put(";")

    def describe(self, items):
        for part in self.parts:
            part.describe(items)

    def run(self, machine, frame):
        machine.step()
        for name, part in zip(self.names, self.parts):
            frame[name] = part.value(machine, frame)


class Jump(Statement):
    def __init__(self, word, label=None):
        self.word, self.label = word, label

    def print(self, out):
        out.put(self.word + (f" {self.label};" if self.label else ";"))

    def describe(self, items):
        pass

    def completes(self, ways):
        ways.add(self.label or self.word)
        return False

    def run(self, machine, frame):
        machine.step()
        if self.word == "goto":
            raise Leave("goto", self.label)
        raise Break if self.word == "break" else Continue


class Return(Statement):
    def __init__(self, expression=None):
        self.expression = expression

    def print(self, out):
        out.put("return")
        if self.expression:
            out.blank()
            self.expression.written(out)
        out.put(";")

    def describe(self, items):
        self.item = items.add("TP", "return", "", self.lines)
        if self.expression:
            self.expression.describe(items)

    def completes(self, ways):
        return False

    def run(self, machine, frame):
        machine.step()
        value = self.expression.value(machine, frame) if self.expression else 0
        machine.hit(self.item)
        raise Leave("return", value)


class Block(Statement):
    """Statements between braces; labels: name and place of those in front of its statements."""

    def __init__(self, statements, labels=()):
        self.statements, self.labels = statements, dict(labels)

    def print(self, out):
        out.put("{")
        out.indent += 1
        for i, statement in enumerate(self.statements):
            out.line()
            for name, place in self.labels.items():
                if place == i:
                    out.put(name + ":")
                    out.line()
            statement.written(out)
        out.indent -= 1
        out.line()
        out.put("}")

    def describe(self, items):
        for statement in self.statements:
            statement.describe(items)

    def completes(self, ways):
        while True:
            before = set(ways)
            reached = True
            for i, statement in enumerate(self.statements):
                reached = reached or any(place == i and name in ways for name, place in self.labels.items())
                if reached:
                    reached = statement.completes(ways)
            if ways == before:
                return reached

    def run(self, machine, frame):
        at = 0
        while at < len(self.statements):
            try:
                self.statements[at].run(machine, frame)
                at += 1
            except Leave as leave:
                if leave.way != "goto" or leave.what not in self.labels:
                    raise
                at = self.labels[leave.what]


class MacroStatement(Statement):
    """The use of a macro whose body is a statement; see MacroUse."""

    def __init__(self, name, template, arguments):
        self.use = MacroUse(name, lambda texts, part: Constant(0), arguments)
        self.template = template

    def print(self, out):
        self.use.written(out)
        out.put(";")

    def describe(self, items):
        self.body = self.template(self.use.texts, lambda number: copy.deepcopy(self.use.parts[number]))
        self.body.place(self.use.lines)
        self.body.describe(items)

    def run(self, machine, frame):
        self.body.run(machine, frame)


class If(Statement):
    def __init__(self, condition, then, other=None, is_else=False):
        self.condition, self.then, self.other, self.is_else = condition, then, other, is_else

    def print_condition(self, out):
        self.condition.written(out)

    def print(self, out):
        out.put("if (")
        self.print_condition(out)
        out.put(")")
        print_body(out, self.then)
        if self.other:
            if isinstance(self.then, Block) and out.random.random() < 0.8:
                out.put(" else")
            else:
                out.line()
                out.put("else")
            print_body(out, self.other, isinstance(self.other, If))

    def describe(self, items):
        self.arms = [items.add("TB", "simple", "ELSEIF" if self.is_else else "THEN", self.then.lines)]
        if self.other is None:
            self.arms.append(items.add("TB", "implicit", "ELSE", self.lines))
        elif isinstance(self.other, If) and self.other.is_else:
            self.arms.append(None)
        else:
            self.arms.append(items.add("TB", "simple", "ELSE", self.other.lines))
        self.decision = Decision(self.condition, items)
        self.then.describe(items)
        if self.other:
            self.other.describe(items)

    def completes(self, ways):
        then = self.then.completes(ways)
        return (self.other.completes(ways) if self.other else True) or then

    def run(self, machine, frame):
        machine.step()
        outcome = self.decision.outcome(machine, frame)
        machine.hit(self.arms[0 if outcome else 1])
        if outcome:
            self.then.run(machine, frame)
        elif self.other:
            self.other.run(machine, frame)


class ComesBack(If):
    """An if whose condition is setjmp, spelled as `form`; the arm that longjmp comes to is `back`, 0 or 1."""

    def __init__(self, form, then, other):
        super().__init__(Constant(0, form), then, other)
        self.back = 1 if form in ("setjmp(env) == 0", "!setjmp(env)") else 0

    def describe(self, items):
        arms = [("simple", "THEN", self.then.lines),
                ("simple", "ELSE", self.other.lines) if self.other else ("implicit", "ELSE", self.lines)]
        if arms[self.back][0] == "simple":
            arms[self.back] = ("atc", "LONGJMP", arms[self.back][2])
        self.arms = [items.add("TB", *arm) for arm in arms]
        self.then.describe(items)
        if self.other:
            self.other.describe(items)

    def run(self, machine, frame):
        bodies = (self.then, self.other)
        machine.hit(self.arms[1 - self.back])
        try:
            if bodies[1 - self.back]:
                bodies[1 - self.back].run(machine, frame)
        except Leave as leave:
            if leave.way != "longjmp":
                raise
            machine.hit(self.arms[self.back])
            if bodies[self.back]:
                bodies[self.back].run(machine, frame)


def print_body(out, body, same_line=False):
    if isinstance(body, Block) or same_line or out.random.random() < 0.3:
        out.put(" ")
        body.written(out)
    else:
        out.indent += 1
        out.line()
        body.written(out)
        out.indent -= 1


class Loop(Statement):
    """word: WHILE, FOR or DO. first and turn of a for are statement and expression or None; condition None: for ever."""

    def __init__(self, word, condition, body, first=None, turn=None):
        self.word, self.condition, self.body, self.first, self.turn = word, condition, body, first, turn

    def print_head(self, out):
        if self.word == "FOR":
            out.put("for (")
            if self.first:
                self.first.written(out)
            else:
                out.put(";")
            if self.condition:
                out.blank()
                self.condition.written(out)
            out.put(";")
            if self.turn:
                out.blank()
                self.turn.written(out)
            out.put(")")
        else:
            out.put("while (")
            self.condition.written(out)
            out.put(")")

    def print(self, out):
        if self.word != "DO":
            self.print_head(out)
            print_body(out, self.body)
        else:
            out.put("do")
            print_body(out, self.body)
            if isinstance(self.body, Block):
                out.put(" ")
            else:
                out.line()
            self.print_head(out)
            out.put(";")

    def forever(self):
        return self.condition is None or (self.condition.constant and self.condition.number != 0)

    def never(self):
        return self.condition is not None and self.condition.constant and self.condition.number == 0

    def describe(self, items):
        self.item = items.add("TB", "simple", self.word, self.body.lines)
        turns = [] if self.never() else "1N" if self.forever() or self.word == "DO" else "01N"
        self.ways = {turn: items.add("TB", "logical", f"{self.word}_{turn}", self.lines) for turn in turns}
        if self.first:
            self.first.describe(items)
        if self.word == "DO":
            self.body.describe(items)
        self.decision = Decision(self.condition, items) if self.condition else None
        if self.turn:
            self.turn.describe(items)
        if self.word != "DO":
            self.body.describe(items)

    def completes(self, ways):
        inner = set(ways) - {"break", "continue"}
        end = self.body.completes(inner) or "continue" in inner
        ways |= inner - {"break", "continue"}
        if "break" in inner:
            return True
        return end if self.word == "DO" and not self.forever() else not self.forever()

    def run(self, machine, frame):
        if self.first:
            self.first.run(machine, frame)
        turns = 0
        try:
            while turns == 0 and self.word == "DO" or not self.decision or self.decision.outcome(machine, frame):
                machine.step()
                turns += 1
                machine.hit(self.item)
                try:
                    self.body.run(machine, frame)
                except Continue:
                    pass
                if self.turn:
                    self.turn.value(machine, frame)
        except Break:
            pass
        except Leave as leave:
            if leave.way in ("return", "goto"):
                self.left(machine, turns)
            raise
        self.left(machine, turns)

    def left(self, machine, turns):
        machine.hit(self.ways.get("01N"[min(turns, 2)]))


class Group(Node):
    """Labels and the statements behind them. A label is a number, a range (two), or None for default."""

    def __init__(self, labels, statements):
        self.labels, self.statements = labels, statements

    def print(self, out):
        self.label_lines = []
        self.spellings = []
        for i, label in enumerate(self.labels):
            if i:
                out.line()
            self.label_lines.append(out.line_of(len(out.text)))
            text = "default" if label is None else f"case {label}" if isinstance(label, int) else "case {} ... {}".format(*label)
            self.spellings.append(text)
            out.put(text + ":")
        out.indent += 1
        for statement in self.statements:
            out.line()
            statement.written(out)
        out.indent -= 1

    def describe(self, items):
        default = None in self.labels
        self.items = [None if label is None else items.add("TE", "constant", text, (line, line))
                      for label, text, line in zip(self.labels, self.spellings, self.label_lines)]
        self.block = items.add("TB", "simple", "DEFAULT" if default else "CASE", self.lines)
        for statement in self.statements:
            statement.describe(items)

    def taken(self, value):
        """The place of the label that takes the value, or None."""
        for i, label in enumerate(self.labels):
            if label == value or (isinstance(label, tuple) and label[0] <= value <= label[1]):
                return i
        return None


class Switch(Statement):
    def __init__(self, expression, groups):
        self.expression, self.groups = expression, groups
        self.default = next((i for i, group in enumerate(groups) if None in group.labels), None)

    def print(self, out):
        out.put("switch (")
        self.expression.written(out)
        out.put(") {")
        for group in self.groups:
            out.line()
            group.written(out)
        out.line()
        out.put("}")

    def describe(self, items):
        self.expression.describe(items)
        for group in self.groups:
            group.describe(items)
        self.implicit = items.add("TB", "implicit", "DEFAULT", self.lines) if self.default is None else None

    def completes(self, ways):
        inner = set(ways) - {"break"}
        end = self.default is None
        for i, group in enumerate(self.groups):
            reached = True
            for statement in group.statements:
                reached = reached and statement.completes(inner)
            end |= reached and i + 1 == len(self.groups)
        ways |= inner - {"break"}
        return end or "break" in inner

    def run(self, machine, frame):
        machine.step()
        value = self.expression.value(machine, frame)
        at = self.default
        for i, group in enumerate(self.groups):
            label = group.taken(value)
            if label is not None:
                machine.hit(group.items[label])
                at = i
        machine.hit(self.implicit if at is None else None)
        try:
            for group in self.groups[at:] if at is not None else []:
                machine.hit(group.block)
                for statement in group.statements:
                    statement.run(machine, frame)
        except Break:
            pass


# --- Functions and programs ---

class Function(Node):
    """result: int or void."""
    never_returns = False

    def __init__(self, name, result, parameters, body, head=None):
        self.name, self.result, self.parameters, self.body = name, result, parameters, body
        self.head = head or f"static {result} {name}({', '.join('int ' + p for p in parameters) or 'void'})"
        self.reads = self.writes = frozenset()
        self.leaves = False

    def print(self, out):
        out.put(self.head)
        self.head_line = out.line_of(len(out.text))
        out.line()
        self.body.written(out)

    def pointer(self):
        types = ", ".join("int" for _ in self.parameters) or "void"
        return f"static {self.result} (*p_{self.name})({types}) = {self.name};"

    def describe(self, items):
        items.service = self.name
        self.entry = items.add("TP", "proc", "", (self.lines[0], self.body.lines[0]))
        self.block = items.add("TB", "simple", "BODY", self.body.lines)
        self.body.describe(items)
        end = (self.body.lines[1], self.body.lines[1])
        self.end_item = items.add("TP", "endproc", "", end) if self.body.completes(set()) else None

    def call(self, machine, arguments):
        machine.step()
        machine.hit(self.entry)
        machine.hit(self.block)
        try:
            self.body.run(machine, dict(zip(self.parameters, arguments)))
        except Leave as leave:
            if leave.way != "return":
                raise
            return leave.what
        machine.hit(self.end_item)
        return 0


class Library:
    """A function of the C library, or of the program's head, that is only called."""

    def __init__(self, name, call, never_returns=False):
        self.name, self.call, self.never_returns = name, call, never_returns
        self.reads = self.writes = frozenset(["OUT"])
        self.leaves = never_returns


class Program:
    def __init__(self, head, functions, variables):
        self.head, self.functions, self.variables = head, functions, variables

    def text(self, random):
        out = Text(random)
        out.put(self.head)
        for function in self.functions:
            out.put("\n")
            function.written(out)
            out.put("\n")
            if function.name != "main":
                out.put(f"{function.pointer()}\n")
        return out.text

    def expected(self):
        """Items with counts, output and status of a run. Needs the text first."""
        items = Items()
        for function in self.functions:
            function.describe(items)
        machine = Machine(items)
        machine.globals = {**self.variables, "cells": [0, 0, 0, 0]}
        try:
            status = self.functions[-1].call(machine, [])
        except Leave as leave:
            if leave.way != "exit":
                raise Reject from None
            status = leave.what
        return items.counts, machine.output, status & 255
