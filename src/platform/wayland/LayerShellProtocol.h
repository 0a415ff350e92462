#pragma once

#include <wayland-client.h>

// An argument of the protocol has the name of a keyword.
#define namespace name_space
#include "wlr-layer-shell-unstable-v1-client-protocol.h"
#undef namespace
