/// @file
/// The names that PMML documents are made of, each in one place.
///
/// Constants are UTF-8 texts (all ASCII) for the DOM functions of MCXDOMHelpers.h, which take
/// `name.c_str()`. Their prefix says what they are: XML_ELE_ an element name, XML_ATT_ an attribute
/// name, XML_VAL_ an attribute value or a text. They follow the PMML versions 3.2 to 4.3 of the
/// Data Mining Group. Several names share a text, and the order of the constants is the order in
/// which they are initialised; a constant is ready before any object of the library's classes that
/// another library or a program defines. All threads may read them.
#ifndef MCXPRSUTIL_MCPMMLTAGS_H
#define MCXPRSUTIL_MCPMMLTAGS_H

#include <string>

#include "mcxprsutil/Export.h"

/// The PMML vocabulary that all PMML code shares.
namespace MCPMMLTags {

// Document element, version, namespace and schema location. The constants that
// end in 42 hold the texts of PMML 4.3, which is no slip; those without a number hold PMML 3.2.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PMMLMODEL;      ///< "PMML"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_VERSION;        ///< "version"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PMMLVERSION;    ///< "3.2"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PMMLVERSION40;  ///< "4.0"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PMMLVERSION41;  ///< "4.1"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PMMLVERSION42;  ///< "4.3"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_XMLNS;          ///< "xmlns"
/// "http://www.dmg.org/PMML-3_2"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PMMLNAMESPACE;
/// "http://www.dmg.org/PMML-4_0"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PMMLNAMESPACE40;
/// "http://www.dmg.org/PMML-4_1"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PMMLNAMESPACE41;
/// "http://www.dmg.org/PMML-4_3"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PMMLNAMESPACE42;
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_XMLNSXSI;  ///< "xmlns:xsi"
/// "http://www.w3.org/2001/XMLSchema-instance"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_SCHEMAINSTANCE;
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_SCHEMALOC;  ///< "xsi:schemaLocation"
/// "http://www.dmg.org/PMML-3_2 pmml-3-2.xsd"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_SCHEMAFILE;
/// "http://www.dmg.org/PMML-4_0 pmml-4-0.xsd"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_SCHEMAFILE40;
/// "http://www.dmg.org/PMML-4_1 pmml-4-1.xsd"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_SCHEMAFILE41;
/// "http://www.dmg.org/PMML-4_3 pmml-4-3.xsd"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_SCHEMAFILE42;

// Header.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_HEADER;     ///< "Header"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_HEADRIGHT;  ///< "copyright"
/// "Copyright (c) The mcxprsutil developers. All rights reserved."
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_HEADRIGHT;
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_DESCRIPTION;  ///< "description"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_APPLICATION;  ///< "Application"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_ANNOTATION;   ///< "Annotation"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_NAME;         ///< "name"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_TIMESTAMP;    ///< "Timestamp"

// Data dictionary: fields, their types and their values.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_DATADICTIONARY;  ///< "DataDictionary"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_NUMBEROFFIELDS;  ///< "numberOfFields"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_DATAFIELD;       ///< "DataField"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_DISPLAYNAME;     ///< "displayName"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_OPTYPE;          ///< "optype"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_CATEGORICAL;     ///< "categorical"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_CONTINUOUS;      ///< "continuous"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_ORDINAL;         ///< "ordinal"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_VALUE;           ///< "Value"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_VALUE;           ///< "value"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_DISPLAYVALUE;    ///< "displayValue"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_DATATYPE;        ///< "dataType"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_STRING;          ///< "string"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_FLOAT;           ///< "float"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_DOUBLE;          ///< "double"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_INTEGER;         ///< "integer"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_DATE;            ///< "date"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_TIME;            ///< "time"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_DATETIME;        ///< "dateTime"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_PROPERTY;        ///< "property"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_MISSING;         ///< "missing"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_VALID;           ///< "valid"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_INVALID;         ///< "invalid"

// Vendor extensions.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_EXTENSION;        ///< "Extension"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_EXTENDER;         ///< "extender"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_TULKCOM;          ///< "TULK"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_MISSINGINTERVAL;  ///< "missingInterval"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_NAME_MSLO;        ///< "invalidRangeLower"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_NAME_MSUP;        ///< "invalidRangeUpper"

// Transformation dictionary, derived fields, bins and intervals.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_TRANSDICT;      ///< "TransformationDictionary"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_DERIVEDFIELD;   ///< "DerivedField"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_FIELDREF;       ///< "FieldRef"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_FIELD;          ///< "field"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_DISCRETIZE;     ///< "Discretize"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_DISCRETIZEBIN;  ///< "DiscretizeBin"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_BINVALUE;       ///< "binValue"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_INTERVAL;       ///< "Interval"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_CLOSURE;        ///< "closure"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_OPENOPEN;       ///< "openOpen"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_OPENCLOSED;     ///< "openClosed"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_CLOSEDOPEN;     ///< "closedOpen"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_CLOSEDCLOSED;   ///< "closedClosed"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_LEFTMARGIN;     ///< "leftMargin"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_RIGHTMARGIN;    ///< "rightMargin"

// Attributes that every model carries.
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_FUNCTIONNAME;    ///< "functionName"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_CLASSIFICATION;  ///< "classification"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_REGRESSION;      ///< "regression"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MODELNAME;       ///< "modelName"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_ALGORITHMNAME;   ///< "algorithmName"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_FIELDNAME;       ///< "fieldName"

// Mining schema.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_MININGSCHEMA;     ///< "MiningSchema"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_MININGFIELD;      ///< "MiningField"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MININGFIELDNAME;  ///< "name"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MININGFIELDUSE;   ///< "usageType"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_MININGFIELDACT;   ///< "active"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_MININGFIELDPRED;  ///< "predicted"
/// "missingValueReplacement"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MISSINGVALUEREPLACE;
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MISSINGVALUETREAT;  ///< "missingValueTreatment"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_ASIS;               ///< "asIs"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_ASVALUE;            ///< "asValue"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_ASMEAN;             ///< "asMean"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_ASMODE;             ///< "asMode"

// Output fields.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_OUTPUT;          ///< "Output"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_OUTPUTFIELD;     ///< "OutputField"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_FEATURE;         ///< "feature"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_ENTITYID;        ///< "entityId"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PREDICTEDVALUE;  ///< "predictedValue"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_PROBABILITY;     ///< "probability"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_RESIDUAL;        ///< "residual"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_STANDARDERROR;   ///< "standardError"

// Model statistics, arrays and matrices.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_MODELSTATS;           ///< "ModelStats"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_UNIVARIATESTATS;      ///< "UnivariateStats"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_ARRAY;                ///< "Array"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_LOWER_N;              ///< "n"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_TYPE;                 ///< "type"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_REAL;                 ///< "real"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_INT;                  ///< "int"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_MATRIX;               ///< "Matrix"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_KIND;                 ///< "kind"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_DIAGONAL;             ///< "diagonal"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_COVARIANCES;          ///< "Covariances"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PARTITION;            ///< "Partition"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PARTITIONFIELDSTATS;  ///< "PartitionFieldStats"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_UPPER_N;              ///< "N"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_COUNTS;               ///< "Counts"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_TOTALFREQ;            ///< "totalFreq"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_INVALIDFREQ;          ///< "invalidFreq"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MISSINGFREQ;          ///< "missingFreq"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_DISCRSTATS;           ///< "DiscrStats"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_NUMERICINFO;          ///< "NumericInfo"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MINIMUM;              ///< "minimum"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MAXIMUM;              ///< "maximum"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MEAN;                 ///< "mean"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_STDDEV;               ///< "standardDeviation"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MEDIAN;               ///< "median"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_CONTSTATS;            ///< "ContStats"

// General regression model. XML_ELE_REGRESSMODEL names the general one; the plain "RegressionModel"
// is MCXPrsUtilTags::XML_ELE_RegressionModel.
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_CONTAINERMODEL;  ///< "containerModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_REGRESSMODEL;    ///< "GeneralRegressionModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_RM_MODEL_TYPE;   ///< "modelType"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_RM_TARGET_VAR;   ///< "targetVariableName"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_RM_MODEL_NAME;   ///< "modelName"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PARAMETERLIST;   ///< "ParameterList"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PARAMETER;       ///< "Parameter"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_LABEL;           ///< "label"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_FACTORLIST;      ///< "FactorList"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PREDICTOR;       ///< "Predictor"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_COVARIATELIST;   ///< "CovariateList"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PPMATRIX;        ///< "PPMatrix"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PPCELL;          ///< "PPCell"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_PREDICTORNAME;   ///< "predictorName"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_PARAMETERNAME;   ///< "parameterName"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_TARGETCATEGORY;  ///< "targetCategory"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PCOVMATRIX;      ///< "PCovMatrix"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_MODEL;           ///< "model"
extern MCXPRSUTIL_EXPORT const std::string XML_VAL_ROBUST;          ///< "robust"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MODELDF;         ///< "modelDF"
/// "targetReferenceCategory"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_TARGETREFERENCECATEGORY;
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PCOVCELL;     ///< "PCovCell"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_TROW;         ///< "tRow"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_TCOL;         ///< "tCol"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_PROW;         ///< "pRow"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_PCOL;         ///< "pCol"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PARAMMATRIX;  ///< "ParamMatrix"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_PCELL;        ///< "PCell"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_BETA;         ///< "beta"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_DF;           ///< "df"

}  // namespace MCPMMLTags

/// Model elements and the vocabulary of segmented models.
namespace MCXPrsUtilTags {

// Model elements.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_AssociationModel;  ///< "AssociationModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_ClusteringModel;   ///< "ClusteringModel"
/// "GeneralRegressionModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_GeneralRegressionModel;
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_MiningModel;      ///< "MiningModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_NaiveBayesModel;  ///< "NaiveBayesModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_NeuralNetwork;    ///< "NeuralNetwork"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_RegressionModel;  ///< "RegressionModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_RuleSetModel;     ///< "RuleSetModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_SequenceModel;    ///< "SequenceModel"
/// "SupportVectorMachineModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_SupportVectorMachineModel;
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_TextModel;        ///< "TextModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_TimeSeriesModel;  ///< "TimeSeriesModel"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_TreeModel;        ///< "TreeModel"

// Segmentation and predicates. SelectFirst, Equal and And are attribute values, their prefix
// notwithstanding.
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_Segmentation;         ///< "Segmentation"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_MultipleModelMethod;  ///< "multipleModelMethod"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_SelectFirst;          ///< "selectFirst"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_Segment;              ///< "Segment"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_SimplePredicate;      ///< "SimplePredicate"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_CompoundPredicate;    ///< "CompoundPredicate"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_Operator;             ///< "operator"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_Equal;                ///< "equal"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_BooleanOperator;      ///< "booleanOperator"
extern MCXPRSUTIL_EXPORT const std::string XML_ATT_And;                  ///< "and"
/// "LocalTransformations"
extern MCXPRSUTIL_EXPORT const std::string XML_ELE_LocalTransformations;

}  // namespace MCXPrsUtilTags

namespace MCXPrsUtil {
namespace MCPMMLTags = ::MCPMMLTags;
namespace MCXPrsUtilTags = ::MCXPrsUtilTags;
}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_MCPMMLTAGS_H
