#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "recording/Recording.h"

/** How far the output of a model was off what it stands for, over the passes that have both. */
struct ModelError {
    std::string model;
    std::string truth;      // the zone "lab-front", or "plant" for the plant's node of its name
    double rms = 0;         // m°C, root of the mean square
    double bias = 0;        // m°C, the mean, model less truth
    int64_t largest = 0;    // m°C, signed
    int64_t largestMs = 0;  // when it was first
    int64_t passes = 0;
};

/** Of each model that something is known of, in the order of their indices. */
std::vector<ModelError> modelErrors(const Recording& recording);
