// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>
#include <QString>

class COrientation;
class CPosition;

/// Names and texts of record files, shared by the XML record and its CSV side file.
namespace RecordFormat {

inline constexpr QLatin1String kRoot("NorvaneXmlRecord");
inline constexpr QLatin1String kHeader("header");
inline constexpr QLatin1String kSource("src");
inline constexpr QLatin1String kDateTime("dateTime8601");
inline constexpr QLatin1String kDescription("descr");
inline constexpr QLatin1String kBody("body");
inline constexpr QLatin1String kComment("comment");
inline constexpr QLatin1String kInstrument("instrument");
inline constexpr QLatin1String kDataset("dataset");
inline constexpr QLatin1String kHeadings("headings");
inline constexpr QLatin1String kParameters("parameters");
inline constexpr QLatin1String kMeasurements("measurements");
inline constexpr QLatin1String kPosition("position");
inline constexpr QLatin1String kOrientation("orientation");
inline constexpr QLatin1String kFlux("flux");

inline constexpr QLatin1String kVersion("ver");
inline constexpr QLatin1String kType("type");
inline constexpr QLatin1String kColumnSeparator("colsep");
inline constexpr QLatin1String kUnit("unit");

inline constexpr QLatin1String kRootVersion("1.0");
inline constexpr QLatin1String kBodyType("tQDR_BODY_KESTRIX");
inline constexpr QLatin1String kBodyVersion("1.1");
inline constexpr QLatin1String kDatasetVersionWithoutUncertainty("1.1");
inline constexpr QLatin1String kDatasetVersion("1.2");

inline constexpr QLatin1Char kSeparator(';');
inline constexpr QLatin1Char kParametersSeparator(' ');

/// In what mapping and measurement records differ.
struct Kind
{
    QLatin1String datasetType;
    QLatin1String description;
    QLatin1String notOfThisKind; ///< the error message for a file with another root
};

inline constexpr Kind kMapping{QLatin1String("tQDR_DATASET_KESTRIX_MAPPING"),
                               QLatin1String("Magnetic Field Mapping File, Norvane"),
                               QLatin1String("The file is not a valid Norvane XML mapping file")};
inline constexpr Kind kMeasurement{QLatin1String("tQDR_DATASET_KESTRIX_MEASUREMENT"),
                                   QLatin1String("Magnetic Field Measurement File, Norvane"),
                                   QLatin1String("The file is not a valid Norvane XML measurement file")};

/// Name and version of the application that writes.
QString source();
/// The present local time.
QString timeOfSave();
QString columnHeadings();
QString toText(const CPosition& position);
QString toText(const COrientation& orientation);

} // namespace RecordFormat
