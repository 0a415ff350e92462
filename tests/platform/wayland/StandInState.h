#pragma once

#include <QPoint>
#include <QRegion>
#include <QSize>
#include <QStringList>

#include <wayland-server.h>

#include <list>
#include <optional>
#include <vector>

namespace randblatt::standin {

struct Output
{
    int number = 0;
    int left = 0;
    QSize size;
    wl_global *global = nullptr;
    std::vector<wl_resource *> resources = {};
    bool isGone = false;
};

struct State;
struct Surface;

/// An object that stands for the blur of a surface; it may outlive the surface.
struct Blur
{
    State *state;
    Surface *surface;
    std::optional<QRegion> pending = {};
    std::optional<QRegion> current = {};
};

/// What a surface of the layer shell is, from one commit to the next.
struct Placement
{
    uint32_t anchor = 0;
    QPoint margin;
    /// What is 0, the anchors decide.
    QSize size{0, 0};
    bool takesKeyboard = false;
};

struct Layer
{
    State *state;
    Surface *surface;
    wl_resource *resource;
    Output *output;
    bool isPanel;
    int id;
    Placement pending = {};
    Placement current = {};
    std::vector<uint32_t> unanswered = {};
    bool isConfigured = false;
    bool isClosed = false;
};

struct Surface
{
    State *state;
    wl_resource *resource;
    Layer *layer = nullptr;
    wl_resource *buffer = nullptr;
    bool isAttached = false;
    QSize picture = {};
    std::vector<wl_resource *> frames = {};
    std::optional<QRegion> pendingInput = {};
    std::optional<QRegion> input = {};
    Blur *effect = nullptr;
    std::optional<QRegion> pendingEffect = {};
    std::optional<QRegion> effectRegion = {};
    Blur *kwinBlur = nullptr;
    bool hasOtherKWinBlur = false;
    std::optional<QRegion> kwinRegion = {};
};

/// What the compositor knows. Everything in it belongs to the compositor's thread, or to who holds its lock.
struct State
{
    wl_display *display = wl_display_create();
    std::list<Output> outputs;
    std::list<Layer *> layers;
    wl_global *effects = nullptr;
    bool canBlur = false;
    std::list<wl_resource *> effectManagers;
    wl_global *kwinBlur = nullptr;
    std::list<wl_resource *> kwinManagers;
    int blurObjects = 0;
    int layersMade = 0;
    QStringList faults;

    void check(bool isRight, const char *fault)
    {
        if (!isRight)
            faults.append(QLatin1StringView(fault));
    }
};

/// What a resource was given as its data.
template <typename Data>
Data *of(wl_resource *resource)
{
    return static_cast<Data *>(wl_resource_get_user_data(resource));
}

inline void destroy(wl_client *, wl_resource *resource)
{
    wl_resource_destroy(resource);
}

template <typename Data>
void deleteData(wl_resource *resource)
{
    delete of<Data>(resource);
}

void bindCompositor(wl_client *client, void *state, uint32_t version, uint32_t id);
void bindLayerShell(wl_client *client, void *state, uint32_t version, uint32_t id);
/// Without windows to place, which Qt does not come up without.
void bindWindowShell(wl_client *client, void *state, uint32_t version, uint32_t id);
void bindEffects(wl_client *client, void *state, uint32_t version, uint32_t id);
void bindKWinBlur(wl_client *client, void *state, uint32_t version, uint32_t id);
/// Wishes that a layer had this size.
void configure(Layer &layer, const QSize &size);
/// None for null.
std::optional<QRegion> copy(wl_resource *region);

} // namespace randblatt::standin
