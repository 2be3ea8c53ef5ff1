#include "heat/EnergySampleBuffer.h"

#include <utility>

#include "base/DecisionObserver.h"
#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"

using android::Mutex;
using kelvo::HeatConversion;
using kelvo::saturatingInt32;

namespace {

constexpr size_t kLeastToConvert = 5;
constexpr int32_t kAmbientWindow = 300;  // s

}  // namespace

EnergySampleBuffer::EnergySampleBuffer(size_t capacity) : mCapacity(capacity) {}

void EnergySampleBuffer::push(std::unique_ptr<EnergySample> sample) {
    {
        Mutex::Autolock lock(mLock);
        mIndex = (mIndex + 1) % static_cast<int64_t>(mCapacity);
        if (isFull()) {
            mSamples[static_cast<size_t>(mIndex)] = std::move(sample);
        } else {
            mSamples.push_back(std::move(sample));
        }
    }
    mNotEmpty.signal();
}

void EnergySampleBuffer::clear() {
    Mutex::Autolock lock(mLock);
    dropAll();
}

void EnergySampleBuffer::dropAll() {
    mSamples.clear();
    mIndex = -1;
}

// Age 0 is the newest sample. Until the ring is full its position is the last one, so this holds
// there too.
size_t EnergySampleBuffer::positionOf(size_t age) const {
    return (static_cast<size_t>(mIndex) + mCapacity - age) % mCapacity;
}

int EnergySampleBuffer::getAvgTemp() const {
    Mutex::Autolock lock(mLock);
    const size_t count = mSamples.size();
    if (count == 0) {
        KLOGE("energySamplebuf getAvgTemp, buffer is empty");
        return -1;
    }
    int64_t sum = 0;
    for (size_t age = 0; age < count; ++age) {
        sum += sampleOf(age).getNtcTemp();
    }
    const auto start = static_cast<size_t>(mIndex) + (isFull() ? mCapacity : 0);
    KLOGD("energySamplebuf getAvgTemp : sum=%d, start=%d, end=%d", static_cast<int32_t>(sum),
          static_cast<int32_t>(start), static_cast<int32_t>(start - count + 1));
    return static_cast<int32_t>(sum / static_cast<int64_t>(count));
}

double EnergySampleBuffer::getSlopeOf() const {
    Mutex::Autolock lock(mLock);
    if (mSamples.empty()) {
        KLOGE("energySamplebuf getSlopeOf, buffer is empty");
        return -1.0;
    }
    const auto count = static_cast<int64_t>(mSamples.size());
    // The newest time stamp once the ring is full, the oldest before: it only decides which way the
    // whole mean second is rounded.
    const int64_t reference = isFull() ? sampleOf(0).getTimeStamp() : mSamples[0]->getTimeStamp();
    double sumTemperatures = 0.0;
    int64_t sumTime = 0;
    for (size_t age = 0; age < mSamples.size(); ++age) {
        sumTemperatures += sampleOf(age).getNtcTemp();
        sumTime += sampleOf(age).getTimeStamp() - reference;
    }
    const int64_t meanTime = sumTime / count;
    const double meanTemperature = sumTemperatures / static_cast<double>(count);
    uint64_t variance = 0;  // unsigned: time stamps far apart may wrap it
    double covariance = 0.0;
    for (size_t age = 0; age < mSamples.size(); ++age) {
        const int64_t d = sampleOf(age).getTimeStamp() - (reference + meanTime);
        variance += static_cast<uint64_t>(d) * static_cast<uint64_t>(d);
        covariance += (sampleOf(age).getNtcTemp() - meanTemperature) * static_cast<double>(d);
    }
    const auto signedVariance = static_cast<int64_t>(variance);
    if (signedVariance == 0) {
        return -1.0;
    }
    const double res = covariance / static_cast<double>(signedVariance);
    KLOGD("energySamplebuf getSlopeOf: sumTemperatures=%lf, meanTemperature=%lf, "
          "meanTime=%d,sampleVariance=%ld, sampleCovariance=%f, sampleBufSize=%d, res=%lf",
          sumTemperatures, meanTemperature, static_cast<int32_t>(meanTime), signedVariance,
          covariance, static_cast<int32_t>(count), res);
    return res;
}

int EnergySampleBuffer::getEnergyToTempCache(float coefficient) const {
    Mutex::Autolock lock(mLock);
    noteMethod(HeatConversion::Method::MEAN, coefficient);
    if (mSamples.empty() || (!isFull() && mSamples.size() == 1)) {
        return noteResult(-1);
    }
    return noteResult(isFull() ? convertFull(coefficient) : convertPartly(coefficient));
}

HeatConversion EnergySampleBuffer::lastConversion() const {
    Mutex::Autolock lock(mLock);
    return mConversion;
}

void EnergySampleBuffer::noteMethod(HeatConversion::Method method, float coefficient) const {
    if (kelvo::decisionObserver() != nullptr) {
        mConversion = {method, coefficient, {}, -1};
    }
}

void EnergySampleBuffer::noteSample(const EnergySample& sample) const {
    if (kelvo::decisionObserver() != nullptr) {
        mConversion.samples.push_back({sample.getTimeStamp(), sample.getValue()});
    }
}

int32_t EnergySampleBuffer::noteResult(int32_t result) const {
    mConversion.result = result;
    return result;
}

// Sums the newest `count` samples, newest first, up to the first that the last conversion has
// counted. How many were summed.
size_t EnergySampleBuffer::sumNew(size_t count, float* sum) const {
    size_t age = 0;
    for (; age < count && sampleOf(age).getTimeStamp() > mCacheTime; ++age) {
        *sum += static_cast<float>(sampleOf(age).getValue());
        noteSample(sampleOf(age));
    }
    return age;
}

// While the ring has room the oldest sample does not count: that is how the mean is defined.
int EnergySampleBuffer::convertPartly(float coefficient) const {
    float sum = 0.0F;
    const size_t countable = mSamples.size() - 1;
    const size_t summed = sumNew(countable, &sum);
    int32_t result = 0;
    if (summed == countable) {
        result = saturatingInt32(sum / static_cast<float>(countable) / coefficient);
    } else if (summed > 0) {
        result = saturatingInt32(static_cast<double>(sum) / static_cast<double>(summed) /
                                 static_cast<double>(coefficient));
    }
    KLOGD("energySamplebuf getEnergyToTemp res=%d, size=%d, coffes=%d", saturatingInt32(sum),
          static_cast<int32_t>(mSamples.size()), saturatingInt32(coefficient));
    return result;
}

int EnergySampleBuffer::convertFull(float coefficient) const {
    KLOGD("energySamplebuf getEnergyToTemp START:");
    float sum = 0.0F;
    const size_t summed = sumNew(mCapacity, &sum);
    const int32_t result =
            summed == 0 ? 0 : saturatingInt32(sum / static_cast<float>(summed) / coefficient);
    KLOGD("energySamplebuf getEnergyToTemp res=%d, size=%d, coffes=%d", saturatingInt32(sum),
          static_cast<int32_t>(mSamples.size()), saturatingInt32(coefficient));
    return result;
}

int EnergySampleBuffer::getEnergyToTemp(float coefficient) {
    {
        Mutex::Autolock lock(mLock);
        if (mSamples.size() < kLeastToConvert) {
            noteMethod(mCachedTemp == -1 ? HeatConversion::Method::NONE
                                         : HeatConversion::Method::REMEMBERED,
                       coefficient);
            return noteResult(mCachedTemp);
        }
    }
    const int32_t converted = getEnergyToTempCache(coefficient);
    Mutex::Autolock lock(mLock);
    mCachedTemp = converted;
    dropAll();
    mCacheTime = kelvo::monotonicSeconds();
    return mCachedTemp;
}

// Newest to oldest and strictly, so that of equal values the newer one stands.
EnergySampleBuffer::Extremes EnergySampleBuffer::findExtremes(int32_t since) const {
    Extremes extremes{positionOf(0), positionOf(0)};
    for (size_t age = 0; age < mSamples.size() && sampleOf(age).getTimeStamp() >= since; ++age) {
        const int32_t value = sampleOf(age).getValue();
        if (value > mSamples[extremes.maxPos]->getValue()) {
            extremes.maxPos = positionOf(age);
        }
        if (value < mSamples[extremes.minPos]->getValue()) {
            extremes.minPos = positionOf(age);
        }
    }
    return extremes;
}

int EnergySampleBuffer::getAmbientCompToTemp(int sinceSecond) const {
    using kelvo::wrappingSub;
    Mutex::Autolock lock(mLock);
    noteMethod(HeatConversion::Method::AMBIENT, 0);
    if (mSamples.empty()) {
        return noteResult(0);
    }
    const Extremes extremes = findExtremes(wrappingSub(kelvo::monotonicSeconds(), kAmbientWindow));
    const EnergySample& max = *mSamples[extremes.maxPos];
    const EnergySample& min = *mSamples[extremes.minPos];
    const int32_t current = sampleOf(0).getValue();
    const int32_t diffTime = wrappingSub(max.getTimeStamp(), min.getTimeStamp());
    KLOGE("AmbientComp maxTempPos:%d minTempPos:%d, cAmbientTemp:%d",
          static_cast<int32_t>(extremes.maxPos), static_cast<int32_t>(extremes.minPos), current);
    KLOGE("AmbientComp maxValue:%d minValue:%d, diffTime:%d", max.getValue(), min.getValue(),
          diffTime);
    const EnergySample& reference = diffTime >= 0 ? max : min;
    const int32_t change = wrappingSub(current, reference.getValue());
    noteSample(sampleOf(0));
    noteSample(reference);
    if (reference.getTimeStamp() > sinceSecond) {
        return noteResult(change);
    }
    const int32_t newest = sampleOf(0).getTimeStamp();
    const int32_t span = wrappingSub(newest, reference.getTimeStamp());
    if (span == 0) {
        return noteResult(0);
    }
    const int64_t product = kelvo::wrappingMul(wrappingSub(newest, sinceSecond), change);
    return noteResult(static_cast<int32_t>(product / span));
}
