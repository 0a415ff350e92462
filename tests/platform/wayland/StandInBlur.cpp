#include "platform/wayland/StandInState.h"

#include <blur-server-protocol.h>
#include <ext-background-effect-v1-server-protocol.h>

namespace randblatt::standin {

namespace {

const auto effectRequests = [] {
    struct ext_background_effect_surface_v1_interface requests
    {
    };
    requests.destroy = destroy;
    requests.set_blur_region = [](wl_client *, wl_resource *effect, wl_resource *region) {
        auto *blur = of<Blur>(effect);
        blur->state->check(blur->surface != nullptr, "a region for the blur of a surface that is gone");
        if (blur->surface != nullptr)
            blur->surface->pendingEffect = copy(region);
    };
    return requests;
}();

void effectGone(wl_resource *resource)
{
    auto *blur = of<Blur>(resource);
    if (blur->surface != nullptr) {
        blur->surface->effect = nullptr;
        blur->surface->pendingEffect.reset();
    }
    --blur->state->blurObjects;
    delete blur;
}

const auto effectManagerRequests = [] {
    struct ext_background_effect_manager_v1_interface requests
    {
    };
    requests.destroy = destroy;
    requests.get_background_effect = [](wl_client *client, wl_resource *manager, uint32_t id,
                                        wl_resource *surface) {
        auto *base = of<Surface>(surface);
        base->state->check(base->effect == nullptr, "a second background effect for a surface");
        auto *blur = new Blur{base->state, base};
        base->effect = blur;
        ++base->state->blurObjects;
        wl_resource_set_implementation(wl_resource_create(client, &ext_background_effect_surface_v1_interface,
                                                          wl_resource_get_version(manager), id),
                                       &effectRequests, blur, effectGone);
    };
    return requests;
}();

const auto kwinBlurRequests = [] {
    struct org_kde_kwin_blur_interface requests
    {
    };
    requests.commit = [](wl_client *, wl_resource *blur) {
        of<Blur>(blur)->current = of<Blur>(blur)->pending;
    };
    requests.set_region = [](wl_client *, wl_resource *blur, wl_resource *region) {
        of<Blur>(blur)->pending = copy(region).value_or(QRegion());
    };
    requests.release = destroy;
    return requests;
}();

void kwinBlurGone(wl_resource *resource)
{
    auto *blur = of<Blur>(resource);
    if (blur->surface != nullptr && blur->surface->kwinBlur == blur)
        blur->surface->kwinBlur = nullptr;
    --blur->state->blurObjects;
    delete blur;
}

void setKWinBlur(Surface &surface, Blur *blur)
{
    if (surface.kwinBlur != nullptr)
        surface.kwinBlur->surface = nullptr;
    surface.kwinBlur = blur;
    surface.hasOtherKWinBlur = true;
}

const auto kwinManagerRequests = [] {
    struct org_kde_kwin_blur_manager_interface requests
    {
    };
    requests.create = [](wl_client *client, wl_resource *manager, uint32_t id, wl_resource *surface) {
        auto *base = of<Surface>(surface);
        base->state->check(of<State>(manager) != nullptr, "a blur of KWin's from a manager that is gone");
        auto *blur = new Blur{base->state, base, QRegion(), QRegion()};
        setKWinBlur(*base, blur);
        ++base->state->blurObjects;
        wl_resource_set_implementation(wl_resource_create(client, &org_kde_kwin_blur_interface, 1, id),
                                       &kwinBlurRequests, blur, kwinBlurGone);
    };
    requests.unset = [](wl_client *, wl_resource *, wl_resource *surface) {
        setKWinBlur(*of<Surface>(surface), nullptr);
    };
    return requests;
}();

} // namespace

void bindEffects(wl_client *client, void *data, uint32_t version, uint32_t id)
{
    auto *state = static_cast<State *>(data);
    wl_resource *manager = wl_resource_create(client, &ext_background_effect_manager_v1_interface,
                                              static_cast<int>(version), id);
    wl_resource_set_implementation(manager, &effectManagerRequests, state,
                                   [](wl_resource *gone) { of<State>(gone)->effectManagers.remove(gone); });
    state->effectManagers.push_back(manager);
    ext_background_effect_manager_v1_send_capabilities(manager, state->canBlur ? 1 : 0);
}

void bindKWinBlur(wl_client *client, void *data, uint32_t version, uint32_t id)
{
    auto *state = static_cast<State *>(data);
    wl_resource *manager =
        wl_resource_create(client, &org_kde_kwin_blur_manager_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(manager, &kwinManagerRequests, state, [](wl_resource *gone) {
        if (auto *known = of<State>(gone))
            known->kwinManagers.remove(gone);
    });
    state->kwinManagers.push_back(manager);
}

} // namespace randblatt::standin
