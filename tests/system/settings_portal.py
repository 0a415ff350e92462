"""A desktop's settings portal, as org.freedesktop.portal.Settings describes it (version 2), with values to set."""

import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

NAME = "org.freedesktop.portal.Desktop"
PATH = "/org/freedesktop/portal/desktop"
INTERFACE = "org.freedesktop.portal.Settings"
DESCRIPTION = """<node><interface name="org.freedesktop.portal.Settings">
  <method name="ReadAll"><arg type="as" direction="in"/><arg type="a{sa{sv}}" direction="out"/></method>
  <method name="ReadOne"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
  <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
  <property name="version" type="u" access="read"/>
</interface></node>"""

APPEARANCE = "org.freedesktop.appearance"
GNOME = "org.gnome.desktop.interface"


class SettingsPortal:
    """values: GLib variants by (namespace, key)."""

    def __init__(self, address, values):
        self._values = dict(values)
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop(self._context)
        ready = threading.Event()
        self._thread = threading.Thread(target=self._run, args=(address, ready), daemon=True)
        self._thread.start()
        ready.wait(10)

    def set(self, namespace, key, value):
        """Changes a value, and tells so."""
        self._values[(namespace, key)] = value
        told = threading.Event()

        def tell():
            self._connection.emit_signal(None, PATH, INTERFACE, "SettingChanged",
                                         GLib.Variant("(ssv)", (namespace, key, value)))
            self._connection.flush_sync(None)
            told.set()
            return GLib.SOURCE_REMOVE
        source = GLib.idle_source_new()
        source.set_callback(lambda *_: tell())
        source.attach(self._context)
        told.wait(10)

    def close(self):
        self._loop.quit()
        self._thread.join(5)

    def _run(self, address, ready):
        self._context.push_thread_default()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self._connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        node = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION)
        self._connection.register_object(PATH, node.interfaces[0], self._called, self._read, None)
        self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                                   GLib.Variant("(su)", (NAME, 0)), None, Gio.DBusCallFlags.NONE, 5000, None)
        ready.set()
        self._loop.run()
        self._connection.close_sync(None)
        self._context.pop_thread_default()

    def _called(self, _connection, _sender, _path, _interface, method, parameters, invocation):
        if method == "ReadAll":
            wanted = parameters.unpack()[0]
            answer = {}
            for (namespace, key), value in self._values.items():
                if not wanted or any(namespace == name or (name.endswith("*") and namespace.startswith(name[:-1]))
                                     for name in wanted):
                    answer.setdefault(namespace, {})[key] = value
            invocation.return_value(GLib.Variant("(a{sa{sv}})", (answer,)))
            return
        value = self._values.get(parameters.unpack())
        if value is None:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "Requested setting not found")
        else:
            invocation.return_value(GLib.Variant("(v)", (value,)))

    @staticmethod
    def _read(*_):
        return GLib.Variant("u", 2)
