// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>
#include <QString>

class COrientation;
class CPosition;

/// Names and texts of record files, shared by the XML record and its CSV side file.
namespace RecordFormat {

inline const QLatin1String kRoot("NorvaneXmlRecord");
inline const QLatin1String kHeader("header");
inline const QLatin1String kSource("src");
inline const QLatin1String kDateTime("dateTime8601");
inline const QLatin1String kDescription("descr");
inline const QLatin1String kBody("body");
inline const QLatin1String kComment("comment");
inline const QLatin1String kInstrument("instrument");
inline const QLatin1String kDataset("dataset");
inline const QLatin1String kHeadings("headings");
inline const QLatin1String kParameters("parameters");
inline const QLatin1String kMeasurements("measurements");
inline const QLatin1String kPosition("position");
inline const QLatin1String kOrientation("orientation");
inline const QLatin1String kFlux("flux");

inline const QLatin1String kVersion("ver");
inline const QLatin1String kType("type");
inline const QLatin1String kColumnSeparator("colsep");
inline const QLatin1String kUnit("unit");

inline const QLatin1String kRootVersion("1.0");
inline const QLatin1String kBodyType("tQDR_BODY_KESTRIX");
inline const QLatin1String kBodyVersion("1.1");
inline const QLatin1String kDatasetVersionWithoutUncertainty("1.1");
inline const QLatin1String kDatasetVersion("1.2");

inline constexpr QLatin1Char kSeparator(';');
inline constexpr QLatin1Char kParametersSeparator(' ');

/// In what mapping and measurement records differ.
struct Kind
{
    QLatin1String datasetType;
    QLatin1String description;
    QLatin1String notOfThisKind; ///< the error message for a file with another root
};

inline const Kind kMapping{QLatin1String("tQDR_DATASET_KESTRIX_MAPPING"),
                           QLatin1String("Magnetic Field Mapping File, Norvane"),
                           QLatin1String("The file is not a valid Norvane XML mapping file")};
inline const Kind kMeasurement{QLatin1String("tQDR_DATASET_KESTRIX_MEASUREMENT"),
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
