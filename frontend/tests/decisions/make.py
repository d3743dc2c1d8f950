"""Makes random programs (see program.py) in which C leaves nothing open: operands whose order is not fixed neither change
what the other reads, nor both hit where one of them may not come back; values stay small; loops end."""

from program import (Assignment, Binary, Block, Call, Cast, Choice, ComesBack, Comma, Constant, Declarations, Element,
                     Evaluate, Expect, Function, Group, If, Jump, Leave, Library, Logical, Loop, MacroStatement,
                     MacroUse, Member, Not, Program, Return, SizeOf, StatementExpression, Switch, Variable)

HEAD = """#include <setjmp.h>
#include <stdio.h>
#include <stdlib.h>

#define MAX(a, b) ((a) > (b) ? (a) : (b))
#define BOTH(a, b) ((a) && (b))
#define BIG(x) ((x) > 5)
#define UNLIKELY(x) __builtin_expect(!!(x), 0)
#define WHEN(c, x) do { if (c) out(x); } while (0)

enum { ONE = 1 };
struct pair { int first, second; };
static int g0, g1, g2, armed, cells[4];
static jmp_buf env;
"""
OUT = frozenset(["OUT"])


def maximum(texts, part):
    return Choice(Binary(">", part(0), part(1)).says(f"({texts[0]}) > ({texts[1]})"), part(0), part(1))


def both(texts, part):
    return Logical("&&", part(0), part(1))


def big(texts, part):
    return Binary(">", part(0), Constant(5))


def unlikely(texts, part):
    return Expect(Not(Not(part(0))), 0)


def out_call(machine, arguments):
    machine.output += f"{arguments[1]} "
    return 0


def leave_by_longjmp(machine, arguments):
    raise Leave("longjmp")


def leave_by_exit(machine, arguments):
    raise Leave("exit", arguments[0])


def conflict(a, b):
    """May the order of two operands be left open?"""
    if a.writes & (b.reads | b.writes) or b.writes & a.reads:
        return True
    return (a.leaves and (b.hits or b.writes)) or (b.leaves and (a.hits or a.writes))


class Maker:
    def __init__(self, random):
        self.random = random
        self.functions = []
        self.callable = []
        self.deadly = []  # functions that never return
        self.number = 0
        self.macros = False
        self.deadly_now = False

    def fresh(self, prefix):
        self.number += 1
        return f"{prefix}{self.number}"

    def chance(self, probability):
        return self.random.random() < probability

    # --- Expressions ---

    def variables(self, assigned=False):
        names = [Variable(name) for name in ("g0", "g1", "g2", *self.locals)]
        names += [Variable(name, truth=True) for name in self.truths]
        if not assigned:
            names += [Variable(name) for name in self.loop_variables]
        return names

    def simple(self):
        if self.chance(0.4):
            return Constant(self.random.randint(-3, 9))
        return self.random.choice(self.variables())

    def beside(self, other, make):
        """An operand beside another one that is evaluated before or behind it."""
        for _ in range(4):
            part = make()
            if not conflict(other, part):
                return part
        return Constant(self.random.randint(1, 9))

    def pair(self, make):
        left = make()
        return left, self.beside(left, make)

    def number_expression(self, depth):
        choice = self.random.random()
        if depth <= 0 or choice < 0.25:
            return self.simple()
        if choice > 0.97:
            return self.in_macro(lambda: MacroUse("MAX", maximum, self.pair(lambda: self.changing(depth - 2))))
        if choice < 0.40:
            operator = self.random.choice("+-*&|^")
            left, right = self.pair(lambda: self.number_expression(depth - 1))
            if operator in "&|^" and left.truth and right.truth:
                return Logical(operator, left, right)
            return Binary(operator, left, right)
        if choice < 0.47:
            return Binary("%", self.number_expression(depth - 1), Constant(self.random.randint(2, 7)))
        if choice < 0.55:
            return self.assignment(depth - 1)
        if choice < 0.70:
            return self.call(depth - 1)
        if choice < 0.80:
            return self.choice(depth - 1)
        if choice < 0.87:
            return self.unusual(depth - 1)
        if choice < 0.90:
            return Comma(self.assignment(depth - 1), self.number_expression(depth - 1))
        return self.truth(depth)

    def unusual(self, depth):
        choice = self.random.random()
        if choice < 0.3:
            return Cast(self.random.choice(["_Bool", "short", "long"]), self.number_expression(depth))
        if choice < 0.4:
            return SizeOf(Logical("&&", self.operand(depth), self.operand(depth)))
        if choice < 0.55 and not self.macros:
            return Member(*self.pair(lambda: self.number_expression(depth)), self.random.choice(["first", "second"]))
        if choice < 0.7 or self.macros:
            return Element(self.number_expression(depth))
        statements = [Evaluate(self.assignment(depth)) for _ in range(self.random.randint(0, 2))]
        jump = None
        if self.chance(0.5) and not self.deadly_now:
            jump = Jump("goto", "done")
            if not self.labels or self.chance(0.5):
                jump = Return(self.simple() if self.result == "int" else None)
            statements.append(If(self.operand(depth), Block([jump])))
        result = self.number_expression(depth)
        made = StatementExpression(statements, result, [*expressions(Block(statements)), result])
        made.leaves |= jump is not None
        return made

    def changing(self, depth):
        part = self.number_expression(depth)
        return self.random.choice(self.variables()) if part.constant else part

    def assignment(self, depth):
        target = self.random.choice(self.variables(assigned=True))
        if self.chance(0.1):
            target = Element(self.random.choice([self.simple, lambda: self.truth(depth)])())
        operator = self.random.choice(["=", "=", "+=", "-=", "++", "--", "++x"])
        if target.truth:
            operator = "="
        if operator in ("++", "--", "++x"):
            return Assignment(target, operator)
        for _ in range(4):
            part = Binary("%", self.number_expression(depth), Constant(16))
            if not conflict(target, part) and not (target.reads | part.reads) & part.writes:
                return Assignment(target, operator, part)
        return Assignment(Variable("g0"), "=", self.simple())

    def call(self, depth):
        if not self.callable:
            return self.simple()
        return self.call_of(self.random.choice(self.callable), depth)

    def call_of(self, function, depth):
        arguments = []
        for _ in function.parameters:
            part = self.number_expression(depth)
            if any(conflict(part, other) for other in arguments):
                part = self.simple()
                if any(conflict(part, other) for other in arguments):
                    part = Constant(4)
            arguments.append(part)
        return Call(function, arguments, f"p_{function.name}" if self.chance(0.1) else None)

    def choice(self, depth):
        condition = self.condition(depth)
        middle = None if self.chance(0.25) else self.number_expression(depth)
        return Choice(condition, middle, self.number_expression(depth))

    def comparison(self, depth):
        left, right = self.pair(lambda: self.number_expression(depth - 1))
        if left.constant and right.constant:
            left = self.random.choice(self.variables())
        return Binary(self.random.choice(["<", ">", "<=", ">=", "==", "!="]), left, right)

    def truth(self, depth):
        """An expression of truth type, not constant."""
        choice = self.random.random()
        if depth <= 0 or choice < 0.25:
            if self.truths and self.chance(0.3):
                return Variable(self.random.choice(self.truths), truth=True)
            return self.comparison(depth)
        if choice < 0.35:
            return Not(self.operand(depth - 1))
        if choice < 0.75:
            operator = self.random.choice(["&&", "||"])
            return Logical(operator, self.operand(depth - 1), self.operand(depth - 1))
        left, right = self.pair(lambda: self.truth(depth - 1))
        if not right.truth:
            return self.truth(depth - 1)
        return Logical(self.random.choice("&|^"), left, right)

    def operand(self, depth):
        """An operand of !, && and ||: anything, not constant."""
        if depth > 0 and self.chance(0.08):
            return self.in_macro(lambda: self.macro(depth - 1))
        if self.chance(0.05):
            return Expect(Not(Not(self.operand(depth))), self.random.choice("01"))
        part = self.truth(depth) if self.chance(0.6) else self.number_expression(depth)
        return self.random.choice(self.variables()) if part.constant else part

    def in_macro(self, make):
        """Macros do not stand in arguments of macros: which of them a text comes from would be a question of taste."""
        if self.macros:
            return self.number_expression(0)
        self.macros = True
        made = make()
        self.macros = False
        return made

    def macro(self, depth):
        name, template, count = self.random.choice([("BOTH", both, 2), ("BIG", big, 1), ("UNLIKELY", unlikely, 1)])
        return MacroUse(name, template, [self.operand(depth) for _ in range(count)])

    def when(self, texts, part):
        call = Call(self.functions[0], [part(1)])
        return Loop("DO", Constant(0).says("0"), Block([If(part(0), Evaluate(call))]))

    def condition(self, depth, constants=False):
        if constants and self.chance(0.04):
            return self.random.choice([Constant(0), Constant(1), Constant(7), Constant(1, "ONE")])
        if constants and self.chance(0.05):
            operator = self.random.choice(["&&", "||"])
            return Logical(operator, *self.random.sample([Constant(self.random.choice([0, 1])), self.operand(depth - 1)], 2))
        return self.operand(depth)

    # --- Statements ---

    def statements(self, depth, most=4):
        return [self.statement(depth) for _ in range(self.random.randint(1, most))]

    def body(self, depth):
        if self.chance(0.25):
            return self.plain_statement()
        if self.chance(0.15):
            return self.random.choice([self.if_statement, self.loop, self.switch])(depth)
        statements = self.statements(depth, 3)
        if self.chance(0.06):
            statements.append(self.jump())
        return Block(statements)

    def plain_statement(self):
        choice = self.random.random()
        if choice < 0.06:
            return self.jump()
        if choice < 0.35:
            return Evaluate(Call(self.functions[0], [self.number_expression(1)]))
        return Evaluate(self.assignment(2))

    def jump(self):
        """A way out of what is around."""
        choice = self.random.random()
        if self.loops and choice < 0.35:
            return Jump("break")
        if self.loops and choice < 0.5:
            return Jump("continue")
        if self.labels and choice < 0.65:
            return Jump("goto", self.random.choice(self.labels))
        if choice > 0.985:
            return Evaluate(Call(Library("exit", leave_by_exit, True), [Constant(self.random.randint(0, 99))]))
        return self.return_statement()

    def return_statement(self):
        if self.deadly_now:
            return Evaluate(self.assignment(1))
        return Return(self.number_expression(2) if self.result == "int" else None)

    def statement(self, depth):
        if depth <= 0:
            return self.plain_statement() if self.chance(0.6) else Evaluate(self.assignment(2))
        choice = self.random.random()
        if choice < 0.3:
            return self.if_statement(depth)
        if choice < 0.5:
            return self.loop(depth)
        if choice < 0.6:
            return self.switch(depth)
        if choice < 0.66:
            return Evaluate(self.truth(3))
        if choice < 0.72:
            return Evaluate(self.choice(2))
        if choice < 0.78:
            return Block([Evaluate(self.truth(2) if self.chance(0.5) else self.number_expression(3),
                                   (self.random.choice(["int", "_Bool"]), self.fresh("v")))] + self.statements(depth - 1, 2))
        if choice < 0.79:
            return Block(self.statements(depth - 1))
        if choice < 0.81:
            if self.chance(0.3):
                declared = Declarations([self.fresh("v")], [Binary("+", self.truth(2), Constant(1))], is_array=True)
            else:
                declared = Declarations([self.fresh("v"), self.fresh("v")], [self.number_expression(2), self.truth(2)])
            return Block([declared, *self.statements(depth - 1, 2)])
        if choice < 0.88:
            return Evaluate(Call(self.functions[0], [self.number_expression(3)]))
        if choice < 0.91:
            return Evaluate(self.call(2))
        if choice < 0.93 and not self.macros:
            return self.in_macro(lambda: MacroStatement("WHEN", self.when, [self.operand(2), self.number_expression(2)]))
        if choice < 0.96:
            return self.leaving()
        return Evaluate(self.assignment(3))

    def leaving(self):
        """if (armed && ...) longjmp(env, 1); or a rare exit."""
        kind = self.random.random()
        if kind < 0.1 and self.deadly:
            way = Call(self.random.choice(self.deadly), [self.number_expression(1)])
            condition = self.comparison(2)
        elif kind < 0.7:
            way = Call(Library("longjmp", leave_by_longjmp, True), [Literal("env"), Constant(1)])
            rare = Binary("==", self.number_expression(2), Constant(self.random.randint(-1, 9)))
            condition = Logical("&&", Variable("armed"), rare)
        else:
            way = Call(Library("exit", leave_by_exit, True), [Constant(self.random.randint(0, 99))])
            condition = Binary("==", self.number_expression(2), Constant(self.random.randint(5, 15)))
        if self.chance(0.3):
            return Evaluate(Logical("&&", condition, Comma(way, Constant(1))))
        return If(condition, Block([Evaluate(way)]) if self.chance(0.5) else Evaluate(way))

    def if_statement(self, depth, is_else=False):
        if depth < 0:
            return self.plain_statement()
        then = self.body(depth - 1)
        other = None
        choice = self.random.random()
        if choice < 0.25:
            other = self.body(depth - 1)
        elif choice < 0.5:
            other = self.if_statement(depth - 1, True) if depth > 1 else None
        if isinstance(other, If):
            other.is_else = True
        if other and ends_open(then):
            then = Block([then])
        return If(self.condition(3, constants=True), then, other, is_else)

    def loop(self, depth):
        if depth < 0:
            return self.plain_statement()
        turns = self.random.randint(0, 4)
        word = self.random.choice(["WHILE", "FOR", "DO"])
        name = self.fresh("i" if word == "FOR" else "t")
        self.loop_variables.append(name)
        counted = Binary("<", Assignment(Variable(name), "++") if word != "FOR" else Variable(name), Constant(turns))
        kind = self.random.random()
        start = turn = None
        outer, self.loops = self.loops, self.loops + 1
        body = self.body(depth - 1)
        if kind < 0.45:
            condition = counted
        elif kind < 0.8:
            condition = Logical("&&", *self.random.sample([counted, self.operand(2)], 2))
        elif kind < 0.93:
            condition = None if word == "FOR" and self.chance(0.6) else Constant(1)
            body = self.braced(body)
            stop = Binary(">", Assignment(Variable(name), "++"), Constant(turns))
            body.statements.insert(0, If(stop, Jump("break") if self.chance(0.6) else self.return_statement()))
        else:
            condition = Constant(0)
        self.loops = outer
        if word == "FOR":
            if condition is None or isinstance(condition, Constant):
                self.locals_needed.append(name)
                if self.chance(0.3):
                    turn = self.assignment(1)
            else:
                start = Evaluate(Constant(0), ("int", name))
                turn = Assignment(Variable(name), "++")
                if self.chance(0.2):
                    turn = Comma(turn, self.number_expression(2))
        else:
            self.locals_needed.append(name)
        if start:
            self.loop_variables.remove(name)
        return Loop(word, condition, body, start, turn)

    def braced(self, body):
        return body if isinstance(body, Block) else Block([body])

    def switch(self, depth):
        numbers = self.random.sample(range(-1, 6), self.random.randint(1, 5))
        labels = list(numbers)
        if self.chance(0.6):
            labels.insert(self.random.randrange(len(labels) + 1), None)
        if self.chance(0.15):
            labels.append((9, 12))
        groups = []
        while labels:
            take = self.random.choice([1, 1, 1, 2])
            statements = self.statements(depth - 1, 2)
            if self.chance(0.65):
                statements.append(Jump("break"))
            groups.append(Group(labels[:take], statements))
            labels = labels[take:]
        value = self.number_expression(2)
        return Switch(value if self.chance(0.4) else Binary("%", value, Constant(4)), groups)

    # --- Functions ---

    def begin_function(self, result, parameters):
        self.result, self.locals, self.truths = result, list(parameters) + ["a"], ["p"]
        self.loop_variables, self.locals_needed, self.loops, self.labels = [], [], 0, []

    def end_function(self, name, parameters, statements, labels=()):
        declarations = [Evaluate(Constant(0), ("int", variable)) for variable in ("a", *self.locals_needed)]
        declarations.append(Evaluate(Constant(0), ("_Bool", "p")))
        labels = [(label, place + len(declarations)) for label, place in labels]
        function = Function(name, self.result, parameters, Block(declarations + statements, labels))
        parts = list(expressions(function.body))
        names = frozenset(["g0", "g1", "g2", "armed", "cells", "OUT"])
        function.reads = frozenset().union(*(part.reads for part in parts)) & names
        function.writes = frozenset().union(*(part.writes for part in parts)) & names
        function.leaves = any(part.leaves for part in parts)
        self.functions.append(function)
        return function

    def function(self):
        parameters = self.random.choice([[], ["x"], ["x"], ["x", "y"]])
        self.begin_function(self.random.choice(["int", "int", "void"]), parameters)
        if self.chance(0.4):
            self.labels = ["done"]
        statements = self.statements(3, 6)
        labels = []
        if self.labels:
            labels.append(("done", len(statements)))
            statements.append(Evaluate(self.assignment(1)))
        if self.chance(0.2):
            back = self.fresh("t")
            self.locals_needed.append(back)
            labels.append(("again", self.random.randrange(len(statements))))
            again = Logical("&&", Binary("<", Assignment(Variable(back), "++"), Constant(2)), self.operand(1))
            statements.append(If(again, Jump("goto", "again")))
        if self.result == "int":
            statements.append(self.return_statement() if self.chance(0.8) else
                              If(self.operand(2), Block([self.return_statement()]), Block([self.return_statement()])))
        return self.end_function(self.fresh("f"), parameters, statements, labels)

    def deadly_function(self):
        self.begin_function("void", ["x"])
        self.deadly_now = True
        jump = Call(Library("longjmp", leave_by_longjmp, True), [Literal("env"), Constant(1)])
        leave = Call(Library("exit", leave_by_exit, True), [self.number_expression(1)])
        condition = Logical("&&", Variable("armed"), self.operand(2))
        function = self.end_function(self.fresh("f"), ["x"], self.statements(1, 2) + [If(condition, Evaluate(jump)), Evaluate(leave)])
        self.deadly_now = False
        function.never_returns = True
        function.head = "_Noreturn " + function.head
        self.deadly.append(function)

    def out(self):
        self.begin_function("int", ["x"])
        printing = Call(Library("printf", out_call), [Literal('"%d "'), Variable("x")])
        result = Binary("%", Variable("x"), Constant(4))
        function = Function("out", "int", ["x"], Block([Evaluate(printing), Return(result)]))
        function.reads = function.writes = OUT
        self.functions.append(function)

    def main(self):
        self.begin_function("int", [])
        self.truths, self.locals = [], []
        self.callable = self.callable or self.functions[:1]
        statements = []
        called = [function for function in self.functions[1:] if not function.never_returns] * 5
        self.random.shuffle(called)
        while called:
            calls = [Evaluate(self.call_of(called.pop(), 1)) for _ in range(min(len(called), 2))]
            arm = Block([Evaluate(Assignment(Variable("armed"), "=", Constant(1))), *calls,
                         Evaluate(Assignment(Variable("armed"), "=", Constant(0)))])
            back = Block([Evaluate(Assignment(Variable("armed"), "=", Constant(0))),
                          Evaluate(Call(self.functions[0], [Constant(77)]))])
            form = self.random.choice(["setjmp(env)", "setjmp(env) == 0", "!setjmp(env)", "setjmp(env) != 0"])
            if form in ("setjmp(env)", "setjmp(env) != 0"):
                statements.append(ComesBack(form, back, arm))
            else:
                statements.append(ComesBack(form, arm, back if self.chance(0.8) else None))
                statements.append(Evaluate(Assignment(Variable("armed"), "=", Constant(0))))
            statements.append(Evaluate(Call(self.functions[0], [self.random.choice([Variable("g0"), Variable("g1")])])))
        statements.append(Return(Binary("%", Variable("g2"), Constant(50))))
        function = Function("main", "int", [], Block(statements), "int main(void)")
        self.functions.append(function)


class Literal(Constant):
    """An argument of a library function."""

    def __init__(self, spelling):
        super().__init__(0, spelling)


def ends_open(statement):
    """Would an else behind it be taken for its own?"""
    if isinstance(statement, If):
        return statement.other is None or ends_open(statement.other)
    return isinstance(statement, Loop) and statement.word != "DO" and ends_open(statement.body)


def expressions(node):
    """All expressions of a statement that are not parts of others."""
    for value in vars(node).values():
        for part in value if isinstance(value, (list, tuple)) else [value]:
            if hasattr(part, "writes"):
                yield part
            elif hasattr(part, "start") or hasattr(part, "written"):
                yield from expressions(part)


def make(random):
    maker = Maker(random)
    maker.out()
    maker.callable = [maker.functions[0]]
    for _ in range(random.randint(2, 5)):
        if maker.chance(0.1):
            maker.deadly_function()
        function = maker.function()
        if function.result == "int":
            maker.callable.append(function)
    maker.main()
    return Program(HEAD, maker.functions, {"g0": 0, "g1": 0, "g2": 0, "armed": 0})
