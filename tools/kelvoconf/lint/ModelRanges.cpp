#include "kelvoconf/lint/ModelRanges.h"

#include "shelltemp/ZoneReader.h"

namespace kelvo::lint {

namespace {

template <typename Map, typename Name>
std::optional<int32_t> plausibleTemp(const Map& temps, const Name& name) {
    const auto found = temps.find(name);
    return found != temps.end() && isPlausibleTemp(found->second) ? std::optional(found->second)
                                                                  : std::nullopt;
}

/** As the daemon finds it: by its type, or by its number when the configuration gave that. */
std::optional<int32_t> tempOf(const ThermalZone& zone, const ZoneSample& sample) {
    return zone.name.empty() ? plausibleTemp(sample.byNumber, zone.index)
                             : plausibleTemp(sample.byType, zone.name);
}

ModelValue explained(const FittingModel& model, std::vector<int32_t> temps,
                     const ZoneSample& sample) {
    ModelValue value;
    value.temps = std::move(temps);
    value.value = evaluateLinearModel(value.temps, model.coefficients, &value.terms);
    value.place = sample.place;
    return value;
}

}  // namespace

ModelRanges::Key ModelRanges::keyOf(const FittingModel& model) {
    Key key;
    for (const ThermalZone& zone : model.zones) {
        key.first.emplace_back(zone.name.empty() ? zone.index : -1, zone.name);
    }
    key.second = model.coefficients;
    return key;
}

void ModelRanges::survey(const std::vector<const FittingModel*>& models) {
    std::vector<std::pair<const FittingModel*, std::optional<Range>*>> open;
    for (const FittingModel* model : models) {
        const auto [entry, isNew] = mRanges.try_emplace(keyOf(*model));
        if (isNew) {
            open.emplace_back(model, &entry->second);
        }
    }
    if (open.empty()) {
        return;
    }
    mSamples([&open](const ZoneSample& sample) {
        for (const auto& [model, range] : open) {
            evaluate(*model, sample, *range);
        }
    });
}

void ModelRanges::evaluate(const FittingModel& model, const ZoneSample& sample,
                           std::optional<Range>& range) {
    std::vector<int32_t> temps;
    for (const ThermalZone& zone : model.zones) {
        const std::optional<int32_t> temp = tempOf(zone, sample);
        if (!temp) {
            return;
        }
        temps.push_back(*temp);
    }
    const int32_t value = evaluateLinearModel(temps, model.coefficients);
    if (!range) {
        const ModelValue first = explained(model, std::move(temps), sample);
        range = Range{first, first};
    } else if (value > range->highest.value) {
        range->highest = explained(model, std::move(temps), sample);
    } else if (value < range->lowest.value) {
        range->lowest = explained(model, std::move(temps), sample);
    }
}

const ModelRanges::Range* ModelRanges::find(const FittingModel& model) const {
    const auto found = mRanges.find(keyOf(model));
    return found != mRanges.end() && found->second ? &*found->second : nullptr;
}

}  // namespace kelvo::lint
