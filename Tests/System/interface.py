"""The interface of the running application, as assistive technology sees it: a tree of objects on the accessibility bus (AT-SPI).

Every question is a round trip through three processes, and the whole tree is read again and again. Each level of it is therefore
asked at once, which costs a fifth of what one question after another does.
"""

import collections
import contextlib
import os

from gi.repository import Gio, GLib

from stage import DEFERRED, PATIENCE_SECONDS, StageError, wait_until

ACCESSIBLE = "org.a11y.atspi.Accessible"
ACTION = "org.a11y.atspi.Action"
COMPONENT = "org.a11y.atspi.Component"
PROPERTIES = "org.freedesktop.DBus.Properties"
TEXT = "org.a11y.atspi.Text"
VALUE = "org.a11y.atspi.Value"
# From AT-SPI's protocol: the numbers of states and roles that tests ask for, and of the two kinds of coordinates. (The library of
# AT-SPI knows them all, but loading it takes as long as Python itself.)
STATES = {"checked": 4, "focusable": 11, "focused": 12, "modal": 16, "visible": 30}
ROLES = {2: "alert", 7: "check box", 11: "combo box", 16: "dialog", 20: "filler", 23: "frame", 27: "image", 29: "label", 31: "list",
         32: "list item", 33: "menu", 35: "menu item", 37: "page tab", 38: "page tab list", 39: "panel", 41: "popup menu",
         43: "push button", 44: "radio button", 48: "scroll bar", 50: "separator", 51: "slider", 52: "spin button",
         61: "text", 62: "toggle button", 69: "window", 75: "application", 79: "entry", 80: "chart", 83: "heading", 88: "link",
         98: "list box", 99: "grouping", 101: "notification"}
ON_SCREEN, IN_WINDOW = 0, 1

Error = GLib.Error
Place = collections.namedtuple("Place", "x y width height")


class Bus:
    """A connection to the accessibility bus of the session."""

    TIMEOUT = int(PATIENCE_SECONDS * 1000)  # milliseconds

    def __init__(self):
        session = self.connect(os.environ["DBUS_SESSION_BUS_ADDRESS"])
        answer = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                   Gio.DBusCallFlags.NONE, self.TIMEOUT, None)
        self.connection = self.connect(answer.unpack()[0])
        session.close_sync(None)

    @staticmethod
    def connect(address):
        flags = Gio.DBusConnectionFlags
        return Gio.DBusConnection.new_for_address_sync(
            address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)

    def is_closed(self):
        return self.connection.is_closed()

    def ask(self, questions):
        """Asks everything at once. A question is (object, interface, method, arguments); an object is (connection, path). Returns
        the answers in order; an answer is the tuple of the values, or the error.
        """
        answers = [None] * len(questions)
        left = len(questions)

        def answered(connection, result, index):
            nonlocal left
            try:
                answers[index] = connection.call_finish(result).unpack()
            except Error as error:
                answers[index] = error
            left -= 1

        # Answers arrive in a context of our own: in the default one, the listeners of a test might be called meanwhile.
        context = GLib.MainContext.new()
        context.push_thread_default()
        try:
            for index, ((owner, path), interface, method, arguments) in enumerate(questions):
                self.connection.call(owner, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, self.TIMEOUT, None,
                                     answered, index)
            while left:
                with DEFERRED:
                    context.iteration(True)
        finally:
            context.pop_thread_default()
        return answers


def asking_for(reference, interface, name):
    """The question for a property."""
    return (reference, PROPERTIES, "Get", GLib.Variant("(ss)", (interface, name)))


class Presence:
    """What one object of the interface is just now: its states, and the references of its children. Raises Error when the object
    is gone.
    """

    QUESTIONS = ("GetState", "GetChildren")

    def __init__(self, bus, reference, answers):
        for answer in answers:
            if isinstance(answer, Error):
                raise answer
        self.bus = bus
        self.reference = reference
        (bits,), (self.children,) = answers[:2]
        self.states = {name for name, bit in STATES.items() if bits[bit // 32] >> bit % 32 & 1}

    @classmethod
    def questions(cls, reference):
        return [(reference, ACCESSIBLE, question, None) for question in cls.QUESTIONS]


class NamedPresence(Presence):
    """The same with its name."""

    def __init__(self, bus, reference, answers):
        super().__init__(bus, reference, answers)
        (self.name,) = answers[2]

    @classmethod
    def questions(cls, reference):
        return [*super().questions(reference), asking_for(reference, ACCESSIBLE, "Name")]


class Node(NamedPresence):
    """One object of the interface. Its states, children, name and role are those of the moment when it was read; everything else
    is asked when it is called for. Raises Error when the object is gone.
    """

    def __init__(self, bus, reference, answers):
        super().__init__(bus, reference, answers)
        (role,) = answers[3]
        self.role = ROLES.get(role, f"role {role}")

    @classmethod
    def questions(cls, reference):
        return [*super().questions(reference), (reference, ACCESSIBLE, "GetRole", None)]

    @staticmethod
    def read(bus, reference):
        return Node(bus, reference, bus.ask(Node.questions(reference)))

    def now(self):
        """The object as it is at present."""
        return self.read(self.bus, self.reference)

    def call(self, interface, method, arguments=None):
        return self.answer((self.reference, interface, method, arguments))

    def get(self, interface, name):
        return self.answer(asking_for(self.reference, interface, name))[0]

    def answer(self, question):
        answer = self.bus.ask([question])[0]
        if isinstance(answer, Error):
            raise answer
        return answer

    def description(self):
        return self.get(ACCESSIBLE, "Description")

    def place(self, on_screen=False):
        """Where it is in its window, or on the screen."""
        arguments = GLib.Variant("(u)", (ON_SCREEN if on_screen else IN_WINDOW,))
        return Place(*self.call(COMPONENT, "GetExtents", arguments)[0])

    def take_focus(self):
        self.call(COMPONENT, "GrabFocus")

    def text(self):
        return self.call(TEXT, "GetText", GLib.Variant("(ii)", (0, self.get(TEXT, "CharacterCount"))))[0]

    def value(self):
        return self.get(VALUE, "CurrentValue")

    def lowest_value(self):
        return self.get(VALUE, "MinimumValue")

    def highest_value(self):
        return self.get(VALUE, "MaximumValue")

    def step(self):
        return self.get(VALUE, "MinimumIncrement")

    def set_value(self, value):
        arguments = GLib.Variant("(ssv)", (VALUE, "CurrentValue", GLib.Variant("d", value)))
        self.answer((self.reference, PROPERTIES, "Set", arguments))

    def actions(self):
        """The names of what can be done with it, in order. All are asked at once, because they change with the focus."""
        return [name for name, _, _ in self.call(ACTION, "GetActions")[0]]

    def act(self, name):
        self.call(ACTION, "DoAction", GLib.Variant("(i)", (self.actions().index(name),)))

    def press(self):
        """Performs the press action, or the closest to it."""
        offered = self.actions()
        for wanted in ("Press", "Toggle", "ShowMenu"):
            if wanted in offered:
                self.act(wanted)
                return
        raise StageError(f"{self.name!r} offers only {sorted(offered)}")


class Interface:
    """The tree of one application. It may end and start again meanwhile."""

    REGISTRY = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")

    def __init__(self, application="Fenwhirl"):
        self.application = application
        self.bus = None

    def root(self):
        """The reference of the application, or None if it does not run."""
        if self.bus is None or self.bus.is_closed():
            try:
                self.bus = Bus()
            except Error:
                return None  # the session has just begun
        answer = self.bus.ask([(self.REGISTRY, ACCESSIBLE, "GetChildren", None)])[0]
        applications = [] if isinstance(answer, Error) else answer[0]
        names = self.bus.ask([asking_for(each, ACCESSIBLE, "Name") for each in applications])
        return next((each for each, name in zip(applications, names) if name == (self.application,)), None)

    def nodes(self, showing=True, kind=Node):
        """Every node, parents first; only visible ones unless `showing` is false."""
        root = self.root()
        read = {}
        level = [root] if root else []
        while level:
            below = []
            for node in self.read_all(level, kind):
                if not showing or node.reference == root or "visible" in node.states:
                    read[node.reference] = node
                    below += node.children
            level = below
        return self.in_order(read, root)

    def read_all(self, references, kind=Node):
        """The nodes with these references, without those that have disappeared."""
        if not references:
            return []  # before the session begins there is no bus to ask
        questions = [kind.questions(each) for each in references]
        answers = iter(self.bus.ask([question for some in questions for question in some]))
        nodes = []
        for each, some in zip(references, questions):
            own = [next(answers) for _ in some]
            with contextlib.suppress(Error):
                nodes.append(kind(self.bus, each, own))
        return nodes

    @staticmethod
    def in_order(read, root):
        waiting, ordered = [root], []
        while waiting:
            node = read.get(waiting.pop(0))
            if node is not None:
                ordered.append(node)
                waiting[:0] = node.children
        return ordered

    def texts(self):
        """The names of everything on the screen, in the order of the tree, without announcements for screen readers."""
        return [node.name for node in self.nodes() if node.name and node.role != "notification"]

    def outline(self):
        """Roles and names of everything on the screen, for error messages."""
        return [f"{node.role} {node.name!r}" for node in self.nodes() if node.name]

    def find(self, name, role=None):
        """The node with that name (a text, or a predicate of a text) and role name ("push button"), or None.

        Of several nodes it is the last one: menus and dialogs come after what they cover. Only those with the name are asked
        for their role.
        """
        fits = name if callable(name) else lambda text: text == name
        found = self.read_all([node.reference for node in self.nodes(kind=NamedPresence) if fits(node.name)])
        return next((node for node in reversed(found) if fits(node.name) and role in (None, node.role)), None)

    def focused(self):
        """The node that has the keyboard focus, or None."""
        found = next((node for node in self.nodes(kind=Presence) if "focused" in node.states), None)
        try:
            return found and Node.read(self.bus, found.reference)
        except Error:
            return None

    def wait_for(self, name, role=None, seconds=PATIENCE_SECONDS):
        return wait_until(lambda: self.find(name, role), lambda: f"{name!r} on the screen; there is {self.outline()}",
                          seconds)

    def wait_until_gone(self, name, role=None, seconds=PATIENCE_SECONDS):
        wait_until(lambda: not self.find(name, role), f"{name!r} leaves the screen", seconds)

    def press(self, name, role=None, seconds=PATIENCE_SECONDS):
        """Waits for a control and performs its press action, or the closest to it."""
        self.wait_for(name, role, seconds).press()
