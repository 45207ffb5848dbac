// Light or dark, and the look of everything that a form leaves open.
#pragma once

namespace brimley::desktop {

enum class Theme { as_system, light, dark };

// For the whole program; windows that are open follow.
void use_theme(Theme theme);
// Once, before the first window.
void use_fonts();

}  // namespace brimley::desktop
