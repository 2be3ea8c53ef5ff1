#include "shelltemp/PassRecord.h"

#include <algorithm>
#include <utility>

namespace kelvo {

void PassRecord::begin(const std::string& scene) {
    mPass.reset();
    if (decisionObserver() != nullptr) {
        mPass.emplace();
        mPass->scene = scene;
    }
}

void PassRecord::fail(const FittingModel& model, const ThermalZone& zone) {
    if (mPass) {
        mPass->failedZone = zone.index;
        mPass->failedModel = model.name;
    }
}

LinearTerms* PassRecord::terms() {
    if (!mPass) {
        return nullptr;
    }
    mTerms = {};
    return &mTerms;
}

void PassRecord::evaluate(const FittingModel& model, const std::vector<int32_t>& temps,
                          int32_t value) {
    if (!mPass) {
        return;
    }
    ModelEvaluation& evaluation = mPass->models.emplace_back();
    evaluation.index = model.index;
    evaluation.name = model.name;
    for (size_t i = 0; i < temps.size(); ++i) {
        const bool weighed = i < mTerms.contributions.size();
        evaluation.terms.push_back({model.zones[i].index, model.zones[i].name, temps[i],
                                    weighed ? model.coefficients[i] : 0,
                                    weighed ? mTerms.contributions[i] : 0});
    }
    evaluation.constant = mTerms.constant;
    evaluation.computed = value;
    evaluation.fitted = value;
}

void PassRecord::correct(int32_t value) {
    if (mPass) {
        mPass->models.back().fitted = value;
    }
}

void PassRecord::beginOutputs(const FittingTemps& temps) {
    if (!mPass) {
        return;
    }
    for (const auto& [index, temp] : temps) {
        OutputDecision& decision = mPass->outputs.emplace_back();
        decision.index = index;
        decision.fitted = decision.capped = decision.value = temp;
    }
}

OutputDecision& PassRecord::output(int32_t index) {
    return *std::ranges::find(mPass->outputs, index, &OutputDecision::index);
}

void PassRecord::cap(int32_t index, int32_t value) {
    if (mPass) {
        output(index).capped = output(index).value = value;
    }
}

void PassRecord::limit(int32_t index, int32_t previous, int32_t seconds,
                       const LimitedValue& result) {
    if (mPass) {
        output(index).limiting = {previous, seconds, result.rate, result.limit};
        output(index).value = result.value;
    }
}

void PassRecord::change(int32_t index, bool written) {
    if (mPass) {
        output(index).changed = true;
        output(index).written = written;
    }
}

void PassRecord::end() {
    if (mPass) {
        decisionObserver()->onFittingPass(*mPass);
        mPass.reset();
    }
}

}  // namespace kelvo
