// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CStandardTexts.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "texts/Texts.h"

namespace quib {

namespace {

struct ButtonText {
    std::string_view asked;
    const char* text;
};
constexpr std::array kButtons = {ButtonText{"&Yes", TextKey("Yes")},      ButtonText{"&No", TextKey("No")},
                                 ButtonText{"Save", TextKey("Save")},     ButtonText{"Discard", TextKey("Do not save")},
                                 ButtonText{"Cancel", TextKey("Cancel")}, ButtonText{"Close", TextKey("Close")}};

}  // namespace

QString CStandardTexts::translate(const char* context, const char* source, const char* /*remark*/,
                                  int /*count*/) const {
    if (std::string_view(context) != "QPlatformTheme") return {};
    const auto found = std::ranges::find(kButtons, std::string_view(source), &ButtonText::asked);
    return found == kButtons.end() ? QString() : Text(found->text);
}

}  // namespace quib
