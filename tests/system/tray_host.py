"""A tray as desktops have it now: the watcher of status notifier items, and a host that has come to it.

Run as a program it is there until it is ended. Tray speaks to the items and to their menus as such a host does.
"""

import sys

import dbus
import dbus.bus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
PROPERTIES = "org.freedesktop.DBus.Properties"
PATH = "/StatusNotifierWatcher"


class Watcher(dbus.service.Object):
    def __init__(self, bus):
        self._bus = bus
        self._items = []
        super().__init__(bus, PATH)
        bus.add_signal_receiver(self._owner_changed, "NameOwnerChanged", "org.freedesktop.DBus")
        # The name last: who waits for it finds everything.
        self._name = dbus.service.BusName(WATCHER, bus, do_not_queue=True)
        self.StatusNotifierHostRegistered()

    def _owner_changed(self, name, _, new):
        if not new:
            self._items = [item for item in self._items if not item.startswith(name + "/")]

    @dbus.service.method(WATCHER, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, service, sender=None):
        # A name of the bus, or a path of the caller.
        item = sender + (service if service.startswith("/") else "/StatusNotifierItem")
        if item not in self._items:
            self._items.append(item)

    @dbus.service.method(dbus.INTROSPECTABLE_IFACE, in_signature="", out_signature="s", path_keyword="path",
                         connection_keyword="connection")
    def Introspect(self, path, connection):
        # Some ask for properties only if they are announced.
        opening = f'<interface name="{WATCHER}">'
        properties = "".join(f'<property name="{name}" type="{kind}" access="read"/>' for name, kind in (
            ("IsStatusNotifierHostRegistered", "b"), ("ProtocolVersion", "i"), ("RegisteredStatusNotifierItems", "as")))
        return super().Introspect(path, connection).replace(opening, opening + properties)

    @dbus.service.method(PROPERTIES, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return self.GetAll(interface)[name]

    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, _):
        return {"IsStatusNotifierHostRegistered": True, "ProtocolVersion": dbus.Int32(0),
                "RegisteredStatusNotifierItems": dbus.Array(self._items, signature="s")}

    @dbus.service.signal(WATCHER)
    def StatusNotifierHostRegistered(self):
        pass


class Tray:
    """What is in the tray of a desktop on whose bus a host runs."""

    def __init__(self, desktop):
        self._bus = dbus.bus.BusConnection(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])

    def _interface(self, name, path, interface):
        return dbus.Interface(self._bus.get_object(name, path, introspect=False), interface)

    def _item(self):
        name, path = self.items()[0].split("/", 1)
        return name, "/" + path

    def items(self):
        """Where each item is; none while no host runs."""
        if not self._bus.name_has_owner(WATCHER):
            return []
        return [str(item) for item in self._interface(WATCHER, PATH, PROPERTIES).Get(
            WATCHER, "RegisteredStatusNotifierItems")]

    def property(self, name):
        """Of the first item."""
        return self._interface(*self._item(), PROPERTIES).Get(ITEM, name)

    def pixmap(self, size):
        """The item's picture of that size: rows of (alpha, red, green, blue)."""
        width, height, data = next(picture for picture in self.property("IconPixmap") if picture[0] == size)
        data = bytes(data)
        return [[tuple(data[4 * (y * width + x):4 * (y * width + x) + 4]) for x in range(width)] for y in range(height)]

    def click(self):
        self._interface(*self._item(), ITEM).Activate(0, 0)

    def _menu(self):
        return self._interface(self._item()[0], str(self.property("Menu")), MENU)

    def menu(self):
        """The entries of the item's menu: (id, properties)."""
        menu = self._menu()
        menu.AboutToShow(0)
        _, (_, _, children) = menu.GetLayout(0, -1, dbus.Array([], signature="s"))
        return [(int(child[0]), {str(key): value for key, value in child[1].items()}) for child in children]

    def choose(self, label):
        """Clicks the menu's entry of that text."""
        entry = next(number for number, properties in self.menu() if properties.get("label") == label)
        self._menu().Event(entry, "clicked", dbus.String("", variant_level=1), dbus.UInt32(0))


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    watcher = Watcher(dbus.SessionBus())
    print("ready", flush=True)
    GLib.MainLoop().run()
    return watcher


if __name__ == "__main__":
    sys.exit(main())
