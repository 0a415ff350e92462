"""What a program shows, as assistive tools are told of it: roles, names, texts and places.

The bus for them has to run, and the program to be started with ENVIRONMENT.
"""

import re
from dataclasses import dataclass, field

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from virtual_desktop import wait_for  # noqa: E402

ROOT = "/org/a11y/atspi/accessible/root"
INTERFACE = "org.a11y.atspi."
PROPERTIES = "org.freedesktop.DBus.Properties"
TIMEOUT_MS = 15000

# Numbers of the accessibility protocol's states.
STATES = {"checked": 4, "enabled": 8, "expanded": 10, "focusable": 11, "focused": 12, "selected": 23, "sensitive": 24,
          "showing": 25, "visible": 30}

WITH_TEXT = {"text", "entry"}


class Unreachable(Exception):
    """The program does not answer: it ends, or has ended."""


# What makes a Qt program tell of itself before any assistive tool has asked.
ENVIRONMENT = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
BUS_LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


def start_bus(desktop):
    """Starts the bus for assistive tools on the desktop; returns its address."""
    desktop.start([BUS_LAUNCHER, "--launch-immediately"])
    answer = wait_for(lambda: desktop.run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
                                          "/org/a11y/bus", "--method", "org.a11y.Bus.GetAddress", check=False),
                      message="no bus for assistive tools")
    return re.search(r"'(.*)'", answer).group(1)


@dataclass
class Node:
    """One thing that is shown."""

    path: str
    role: str = ""
    name: str = ""
    text: str = ""
    states: int = 0
    children: list = field(default_factory=list)

    def has(self, state):
        return bool(self.states >> STATES[state] & 1)

    def all(self):
        """The node and all that is in it, in depth-first order."""
        yield self
        for child in self.children:
            yield from child.all()

    def find(self, role=None, name=None):
        """All within, of this role, whose whole name matches the regular expression."""
        return [node for node in self.all() if (role is None or node.role == role)
                and (name is None or re.fullmatch(name, node.name, re.DOTALL))]

    def first(self, role=None, name=None):
        """The first of find(), or None."""
        found = self.find(role, name)
        return found[0] if found else None

    def __str__(self, depth=0):
        marks = "".join(f" {state}" for state in ("focused", "checked", "showing", "visible") if self.has(state))
        text = f" {self.text!r}" if self.role in WITH_TEXT else ""
        return "\n".join([f"{'  ' * depth}{self.role} {self.name!r}{text}{marks}"]
                         + [child.__str__(depth + 1) for child in self.children])


class Application:
    """One process's tree. Nothing is kept between two questions."""

    def __init__(self, bus_address, pid):
        self._connection = Gio.DBusConnection.new_for_address_sync(
            bus_address,
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None, None)
        self._pid = pid
        self._name = None

    def windows(self):
        """The program's windows with all that is in them."""
        return self._read(self._bus_name())

    def frames(self, nodes):
        """(x, y, width, height) of each node on the screen."""
        screen = GLib.Variant("(u)", (0,))
        answers = self._ask(self._bus_name(), [(node.path, "Component", "GetExtents", screen) for node in nodes])
        return [answer[0] for answer in answers]

    def ping(self):
        """Asks for what is at hand, so that only the program's main thread takes time."""
        self._ask(self._bus_name(), [(ROOT, "Accessible", "GetRole", None)])

    # --- hands of an assistive tool

    def actions(self, node):
        """The names of what can be done with the node."""
        answer = self._ask(self._bus_name(), [(node.path, "Action", "GetActions", None)], lenient=True)[0]
        return [action[0] for action in answer[0]] if answer else []

    def act(self, node, name):
        index = self.actions(node).index(name)
        return self._ask(self._bus_name(), [(node.path, "Action", "DoAction", GLib.Variant("(i)", (index,)))])[0][0]

    def value(self, node):
        """(lowest, present, highest) of what has a value."""
        names = ("MinimumValue", "CurrentValue", "MaximumValue")
        answers = self._ask(self._bus_name(), [(node.path, None, "Get", GLib.Variant("(ss)", (INTERFACE + "Value", name)))
                                               for name in names])
        return tuple(answer[0] for answer in answers)

    def set_value(self, node, value):
        arguments = GLib.Variant("(ssv)", (INTERFACE + "Value", "CurrentValue", GLib.Variant("d", value)))
        self._ask(self._bus_name(), [(node.path, None, "Set", arguments)])

    def descriptions(self, nodes):
        question = GLib.Variant("(ss)", (INTERFACE + "Accessible", "Description"))
        answers = self._ask(self._bus_name(), [(node.path, None, "Get", question) for node in nodes], lenient=True)
        return [answer[0] if answer else "" for answer in answers]

    def hear(self, member, heard):
        """Calls heard with what each signal of the program's of this name says, while follow() runs."""
        def arrived(_connection, _sender, _path, _interface, _signal, parameters):
            heard(parameters.unpack())
        self._connection.signal_subscribe(self._bus_name(), "org.a11y.atspi.Event.Object", member, None, None,
                                          Gio.DBusSignalFlags.NONE, arrived)

    @staticmethod
    def follow():
        """Takes in what was heard."""
        while GLib.MainContext.default().iteration(False):
            pass

    def close(self):
        self._connection.close_sync(None)

    def _bus_name(self):
        if self._name is None:
            self._name = next((name for name in self._bus("ListNames", None)[0] if name.startswith(":")
                               and self._pid_of(name) == self._pid), None)
            if self._name is None:
                raise Unreachable("not on the bus yet")
        return self._name

    def _pid_of(self, name):
        try:
            return self._bus("GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0]
        except GLib.Error:
            return None

    def _bus(self, method, arguments):
        return self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                          method, arguments, None, Gio.DBusCallFlags.NONE, TIMEOUT_MS, None).unpack()

    def _read(self, name):
        """Level by level, so that the questions of a level are under way together."""
        root = Node(ROOT)
        level = [root]
        while level:
            questions = []
            for node in level:
                questions += [(node.path, "Accessible", "GetRoleName", None), (node.path, "Accessible", "GetState", None),
                              (node.path, "Accessible", "GetChildren", None),
                              (node.path, None, "Get", GLib.Variant("(ss)", (INTERFACE + "Accessible", "Name")))]
            answers = self._ask(name, questions, lenient=True)
            below = []
            texts = []
            for index, node in enumerate(level):
                role, states, children, label = answers[4 * index:4 * index + 4]
                # What went away between two levels has no answers.
                if None in (role, states, children, label):
                    continue
                node.role, node.name = role[0], label[0]
                node.states = states[0][0] | states[0][1] << 32
                node.children = [Node(path) for bus_name, path in children[0] if bus_name == name]
                below += node.children
                if node.role in WITH_TEXT:
                    texts.append(node)
            answers = self._ask(name, [(node.path, "Text", "GetText", GLib.Variant("(ii)", (0, -1))) for node in texts],
                                lenient=True)
            for node, answer in zip(texts, answers):
                node.text = answer[0] if answer else ""
            level = below
        return root.children

    def _ask(self, name, questions, lenient=False):
        """The answers to (path, interface, method, arguments), None for one that failed if lenient."""
        answers = [None] * len(questions)
        waiting = len(questions)
        failure = None
        context = GLib.MainContext()
        context.push_thread_default()

        def answered(connection, result, index):
            nonlocal waiting, failure
            waiting -= 1
            try:
                answers[index] = connection.call_finish(result).unpack()
            except GLib.Error as error:
                gone = error.matches(Gio.dbus_error_quark(), Gio.DBusError.SERVICE_UNKNOWN) \
                    or error.matches(Gio.dbus_error_quark(), Gio.DBusError.NO_REPLY) \
                    or error.domain == "g-io-error-quark"
                if gone or not lenient:
                    failure = error

        try:
            for index, (path, interface, method, arguments) in enumerate(questions):
                self._connection.call(name, path, INTERFACE + interface if interface else PROPERTIES, method, arguments,
                                      None, Gio.DBusCallFlags.NO_AUTO_START, TIMEOUT_MS, None, answered, index)
            while waiting:
                context.iteration(True)
        finally:
            context.pop_thread_default()
        if failure:
            raise Unreachable(failure.message)
        return answers
