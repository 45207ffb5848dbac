// What a row of a master must be like before it is stored, and who uses it.
#include <fmt/format.h>

#include <algorithm>

#include "kernel/money.h"
#include "kernel/user_dates.h"
#include "masters/master_form.h"

namespace brimley::masters {

bool MasterForm::is_right() {
    for (const Place& place : places_) {
        const std::string fault = fault_of(place);
        if (!fault.empty()) return refuse(fault);
    }
    const std::string fault = master_.fault ? master_.fault(*this) : std::string{};
    return fault.empty() || refuse(fault);
}

std::string MasterForm::fault_of(const Place& place) {
    const Field& field = *place.field;
    if (field.computed || field.kind == Field::Kind::flag) return {};
    const std::string typed = text_in(place);
    if (!typed.empty()) return fault_of_text(place, typed);
    return field.required ? fmt::format("{} is missing.", field.caption) : std::string{};
}

std::string MasterForm::fault_of_text(const Place& place, const std::string& typed) {
    const Field& field = *place.field;
    switch (field.kind) {
        case Field::Kind::number:
            return kernel::is_numeric(typed) ? std::string{}
                                             : fmt::format("{} must be a number.", field.caption);
        case Field::Kind::date:
            return kernel::try_user_date(typed, context().BRIMLEY_DATE_FORMAT)
                       ? std::string{}
                       : fmt::format("{} is not a date ({}).", typed, context().BRIMLEY_DATE_FORMAT);
        case Field::Kind::choice:
            return std::ranges::find(field.choices, typed) != field.choices.end()
                       ? std::string{}
                       : fmt::format("{} cannot be {}.", field.caption, typed);
        case Field::Kind::known: {
            bool is_known = false;
            step("look up", [&] { is_known = kernel().exists(field.of.table, {{field.of.field, typed}}); });
            return is_known ? std::string{} : fmt::format("There is no {} {}.", field.of.what, typed);
        }
        default:
            // No query can look for it.
            if (field.key && typed.find('\'') != std::string::npos)
                return fmt::format("{} must not hold a quote.", field.caption);
            return {};
    }
}

std::string MasterForm::user_of_row(const std::vector<Use>& uses) {
    for (const Use& use : uses) {
        const std::string first = shown_->front().text();
        const bool is_used =
            use.second_field == nullptr
                ? kernel().exists(use.table, {{use.field, first}})
                : kernel().exists(use.table, {{use.field, first}, {use.second_field, shown_->at(1).text()}});
        if (is_used) return use.by;
    }
    return {};
}

bool MasterForm::keeps_what_lasts() {
    std::string by;
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const Field& field = *places_[i].field;
        if (field.rising && number(field.name) < kernel::money_value(shown_texts_.at(i)))
            return refuse(fmt::format("{} must not be less than {}.", field.caption, shown_texts_.at(i)));
        if (!field.lasting || text_in(places_[i]) == shown_texts_.at(i)) continue;
        if (by.empty()) by = user_of_row(master_.posted_in);
        if (!by.empty())
            return refuse(
                fmt::format("{} cannot be changed: the {} has {}.", field.caption, name_of_row(), by));
    }
    return true;
}

bool MasterForm::leaves_company_right() {
    const std::string fault = master_.fault_of_company ? master_.fault_of_company(kernel()) : std::string{};
    return fault.empty() || refuse(fault);
}

}  // namespace brimley::masters
