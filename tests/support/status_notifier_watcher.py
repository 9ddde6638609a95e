#!/usr/bin/python3
"""A place for status items on the session bus: org.kde.StatusNotifierWatcher, with one host in it when
"host" is given. Runs until it is killed."""

import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.kde.StatusNotifierWatcher"
# Qt reads the properties through their introspection.
INTROSPECTION = f"""<!DOCTYPE node PUBLIC "-//freedesktop//DTD D-BUS Object Introspection 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd">
<node><interface name="{NAME}">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
<property name="RegisteredStatusNotifierItems" type="as" access="read"/>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
<property name="ProtocolVersion" type="i" access="read"/>
<signal name="StatusNotifierHostRegistered"/>
</interface><interface name="org.freedesktop.DBus.Properties">
<method name="Get"><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="v" direction="out"/></method></interface></node>"""


class Watcher(dbus.service.Object):
    def __init__(self, bus, has_host):
        self.has_host = has_host
        self.items = []
        super().__init__(bus, "/StatusNotifierWatcher")

    @dbus.service.method("org.freedesktop.DBus.Introspectable", out_signature="s")
    def Introspect(self):
        return INTROSPECTION

    @dbus.service.method(NAME, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, item, sender=None):
        self.items.append(sender)

    @dbus.service.method(NAME, in_signature="s")
    def RegisterStatusNotifierHost(self, _host):
        self.has_host = True
        self.StatusNotifierHostRegistered()

    @dbus.service.signal(NAME)
    def StatusNotifierHostRegistered(self):
        pass

    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="ss", out_signature="v")
    def Get(self, _interface, name):
        return {"IsStatusNotifierHostRegistered": dbus.Boolean(self.has_host),
                "RegisteredStatusNotifierItems": dbus.Array(self.items, signature="s"),
                "ProtocolVersion": dbus.Int32(0)}[name]


DBusGMainLoop(set_as_default=True)
connection = dbus.SessionBus()
watcher = Watcher(connection, "host" in sys.argv[1:])
claim = dbus.service.BusName(NAME, connection, do_not_queue=True)
GLib.MainLoop().run()
