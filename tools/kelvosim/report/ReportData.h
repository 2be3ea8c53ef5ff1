#pragma once

#include <json/value.h>

#include <vector>

#include "comparison/Comparison.h"
#include "recording/Recording.h"
#include "report/ColumnCode.h"

// A recording as the object that the page's scripts work on. Figures are coded in columns.

/** {"name", "unit", "column"}. */
Json::Value seriesData(const Series& series, const RowTimes& times);
/** {"count", "steps"}. */
Json::Value timesData(const RowTimes& times);

/** The whole recording, and the runs that it is compared with. */
Json::Value reportData(const Recording& recording, const std::vector<ComparedRun>& others);
/** An element of "others": the other run's figures and where the two differ. */
Json::Value comparisonData(const ComparedRun& other, const RowTimes& times);

/** How far models were off: [model, truth, r.m.s., largest, when, bias] each. */
Json::Value errorsData(const std::vector<ModelError>& errors);

/** Members "passes", "outputs", "decisions" and "rankings": why each value is what it is. */
void addReasons(Json::Value& data, const Recording& recording);
