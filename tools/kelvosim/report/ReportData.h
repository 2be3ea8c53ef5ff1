#pragma once

#include <json/value.h>

#include "comparison/Comparison.h"
#include "recording/Recording.h"
#include "report/ColumnCode.h"

// A recording as the object that the page's scripts work on. Figures are coded in columns.

/** {"name", "unit", "column"}. */
Json::Value seriesData(const Series& series, const RowTimes& times);
/** {"count", "steps"}. */
Json::Value timesData(const RowTimes& times);

/** The whole recording, and the run that it is compared with when there is one. */
Json::Value reportData(const Recording& recording, const ComparedRun* other);
/** Member "other": the other run's figures and where the two differ. */
Json::Value comparisonData(const ComparedRun& other, const RowTimes& times);

/** Members "passes", "outputs", "decisions" and "rankings": why each value is what it is. */
void addReasons(Json::Value& data, const Recording& recording);
