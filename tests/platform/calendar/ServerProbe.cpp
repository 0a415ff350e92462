#include "ServerProbe.h"

#include <QtGlobal>

#include <libecal/libecal.h>

namespace randblatt {

namespace {

void check(bool succeeded, GError *error, const char *what)
{
    if (!succeeded)
        qFatal("%s: %s", what, error != nullptr ? error->message : "");
}

GSList *allObjects(ECalClient *client)
{
    GSList *objects = nullptr;
    GError *error = nullptr;
    check(e_cal_client_get_object_list_sync(client, "#t", &objects, nullptr, &error), error, "list");
    return objects;
}

} // namespace

ServerProbe::ServerProbe()
{
    GError *error = nullptr;
    m_registry = e_source_registry_new_sync(nullptr, &error);
    check(m_registry != nullptr, error, "registry");
    ESource *source = e_source_registry_ref_default_calendar(m_registry);
    check(source != nullptr, nullptr, "default calendar");
    EClient *client = e_cal_client_connect_sync(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS,
                                                static_cast<guint32>(-1), nullptr, &error);
    check(client != nullptr, error, "client");
    m_client = E_CAL_CLIENT(client);
    g_object_unref(source);
}

ServerProbe::~ServerProbe()
{
    g_clear_object(&m_broken);
    g_clear_object(&m_client);
    g_clear_object(&m_registry);
}

void ServerProbe::clear()
{
    GSList *objects = allObjects(m_client);
    for (GSList *link = objects; link != nullptr; link = link->next) {
        const char *uid = i_cal_component_get_uid(static_cast<ICalComponent *>(link->data));
        // A series goes with all its exceptions, which the list names as well.
        e_cal_client_remove_object_sync(m_client, uid, nullptr, E_CAL_OBJ_MOD_ALL, E_CAL_OPERATION_FLAG_NONE,
                                        nullptr, nullptr);
    }
    g_slist_free_full(objects, g_object_unref);
}

void ServerProbe::add(const QByteArray &ics)
{
    ICalComponent *calendar = i_cal_component_new_from_string(ics.constData());
    check(calendar != nullptr, nullptr, "text");
    GError *error = nullptr;
    check(e_cal_client_receive_objects_sync(m_client, calendar, E_CAL_OPERATION_FLAG_NONE, nullptr, &error),
          error, "receive");
    g_object_unref(calendar);
}

void ServerProbe::change(const QByteArray &uid, const QByteArray &property)
{
    GError *error = nullptr;
    ICalComponent *event = nullptr;
    check(e_cal_client_get_object_sync(m_client, uid.constData(), nullptr, &event, nullptr, &error), error,
          "get");
    i_cal_component_take_property(event, i_cal_property_new_from_string(property.constData()));
    check(e_cal_client_modify_object_sync(m_client, event, E_CAL_OBJ_MOD_ALL, E_CAL_OPERATION_FLAG_NONE,
                                          nullptr, &error),
          error, "modify");
    g_object_unref(event);
}

QStringList ServerProbe::titles() const
{
    QStringList titles;
    GSList *objects = allObjects(m_client);
    for (GSList *link = objects; link != nullptr; link = link->next)
        titles.append(
            QString::fromUtf8(i_cal_component_get_summary(static_cast<ICalComponent *>(link->data))));
    g_slist_free_full(objects, g_object_unref);
    return titles;
}

void ServerProbe::addBrokenCalendar(const QByteArray &name)
{
    GError *error = nullptr;
    m_broken = e_source_new(nullptr, nullptr, &error);
    check(m_broken != nullptr, error, "source");
    e_source_set_display_name(m_broken, name.constData());
    e_source_set_parent(m_broken, "local-stub");
    auto *extension =
        static_cast<ESourceBackend *>(e_source_get_extension(m_broken, E_SOURCE_EXTENSION_CALENDAR));
    e_source_backend_set_backend_name(extension, "gibtesnicht");
    check(e_source_registry_commit_source_sync(m_registry, m_broken, nullptr, &error), error, "commit");
}

void ServerProbe::removeBrokenCalendar()
{
    // The server's own record of it, not the draft that was handed in.
    ESource *source = e_source_registry_ref_source(m_registry, e_source_get_uid(m_broken));
    check(source != nullptr, nullptr, "broken calendar");
    GError *error = nullptr;
    check(e_source_remove_sync(source, nullptr, &error), error, "remove");
    g_object_unref(source);
    g_clear_object(&m_broken);
}

void ServerProbe::useReadOnlyDefault(bool readOnly)
{
    ESource *source = e_source_registry_ref_source(m_registry, readOnly ? "birthdays" : "system-calendar");
    check(source != nullptr, nullptr, "default calendar");
    e_source_registry_set_default_calendar(m_registry, source);
    g_object_unref(source);
}

} // namespace randblatt
