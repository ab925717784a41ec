#include "mcxprsutil/MCPMMLTags.h"

#include "xml/VendorExtender.h"

namespace MCPMMLTags {

// Document element, version, namespace and schema location. The constants that
// end in 42 hold the texts of PMML 4.3, which is no slip; those without a number hold PMML 3.2.
const std::string XML_ELE_PMMLMODEL = "PMML";
const std::string XML_ATT_VERSION = "version";
const std::string XML_VAL_PMMLVERSION = "3.2";
const std::string XML_VAL_PMMLVERSION40 = "4.0";
const std::string XML_VAL_PMMLVERSION41 = "4.1";
const std::string XML_VAL_PMMLVERSION42 = "4.3";
const std::string XML_ATT_XMLNS = "xmlns";
const std::string XML_VAL_PMMLNAMESPACE = "http://www.dmg.org/PMML-3_2";
const std::string XML_VAL_PMMLNAMESPACE40 = "http://www.dmg.org/PMML-4_0";
const std::string XML_VAL_PMMLNAMESPACE41 = "http://www.dmg.org/PMML-4_1";
const std::string XML_VAL_PMMLNAMESPACE42 = "http://www.dmg.org/PMML-4_3";
const std::string XML_ATT_XMLNSXSI = "xmlns:xsi";
const std::string XML_VAL_SCHEMAINSTANCE = "http://www.w3.org/2001/XMLSchema-instance";
const std::string XML_ATT_SCHEMALOC = "xsi:schemaLocation";
const std::string XML_VAL_SCHEMAFILE = XML_VAL_PMMLNAMESPACE + " pmml-3-2.xsd";
const std::string XML_VAL_SCHEMAFILE40 = XML_VAL_PMMLNAMESPACE40 + " pmml-4-0.xsd";
const std::string XML_VAL_SCHEMAFILE41 = XML_VAL_PMMLNAMESPACE41 + " pmml-4-1.xsd";
const std::string XML_VAL_SCHEMAFILE42 = XML_VAL_PMMLNAMESPACE42 + " pmml-4-3.xsd";

// Header.
const std::string XML_ELE_HEADER = "Header";
const std::string XML_ATT_HEADRIGHT = "copyright";
const std::string XML_VAL_HEADRIGHT =
    "Copyright (c) The mcxprsutil developers. All rights reserved.";
const std::string XML_ATT_DESCRIPTION = "description";
const std::string XML_ELE_APPLICATION = "Application";
const std::string XML_ELE_ANNOTATION = "Annotation";
const std::string XML_ATT_NAME = "name";
const std::string XML_ELE_TIMESTAMP = "Timestamp";

// Data dictionary: fields, their types and their values.
const std::string XML_ELE_DATADICTIONARY = "DataDictionary";
const std::string XML_ATT_NUMBEROFFIELDS = "numberOfFields";
const std::string XML_ELE_DATAFIELD = "DataField";
const std::string XML_ATT_DISPLAYNAME = "displayName";
const std::string XML_ATT_OPTYPE = "optype";
const std::string XML_VAL_CATEGORICAL = "categorical";
const std::string XML_VAL_CONTINUOUS = "continuous";
const std::string XML_VAL_ORDINAL = "ordinal";
const std::string XML_ELE_VALUE = "Value";
const std::string XML_ATT_VALUE = "value";
const std::string XML_ATT_DISPLAYVALUE = "displayValue";
const std::string XML_ATT_DATATYPE = "dataType";
const std::string XML_VAL_STRING = "string";
const std::string XML_VAL_FLOAT = "float";
const std::string XML_VAL_DOUBLE = "double";
const std::string XML_VAL_INTEGER = "integer";
const std::string XML_VAL_DATE = "date";
const std::string XML_VAL_TIME = "time";
const std::string XML_VAL_DATETIME = "dateTime";
const std::string XML_ATT_PROPERTY = "property";
const std::string XML_VAL_MISSING = "missing";
const std::string XML_VAL_VALID = "valid";
const std::string XML_VAL_INVALID = "invalid";

// Vendor extensions.
const std::string XML_ELE_EXTENSION = "Extension";
const std::string XML_ATT_EXTENDER = "extender";
const std::string XML_VAL_TULKCOM = MCXPrsUtil::kVendorExtender;
const std::string XML_VAL_MISSINGINTERVAL = "missingInterval";
const std::string XML_VAL_NAME_MSLO = "invalidRangeLower";
const std::string XML_VAL_NAME_MSUP = "invalidRangeUpper";

// Transformation dictionary, derived fields, bins and intervals.
const std::string XML_ELE_TRANSDICT = "TransformationDictionary";
const std::string XML_ELE_DERIVEDFIELD = "DerivedField";
const std::string XML_ELE_FIELDREF = "FieldRef";
const std::string XML_ATT_FIELD = "field";
const std::string XML_ELE_DISCRETIZE = "Discretize";
const std::string XML_ELE_DISCRETIZEBIN = "DiscretizeBin";
const std::string XML_ATT_BINVALUE = "binValue";
const std::string XML_ELE_INTERVAL = "Interval";
const std::string XML_ATT_CLOSURE = "closure";
const std::string XML_VAL_OPENOPEN = "openOpen";
const std::string XML_VAL_OPENCLOSED = "openClosed";
const std::string XML_VAL_CLOSEDOPEN = "closedOpen";
const std::string XML_VAL_CLOSEDCLOSED = "closedClosed";
const std::string XML_ATT_LEFTMARGIN = "leftMargin";
const std::string XML_ATT_RIGHTMARGIN = "rightMargin";

// Attributes that every model carries.
const std::string XML_ATT_FUNCTIONNAME = "functionName";
const std::string XML_VAL_CLASSIFICATION = "classification";
const std::string XML_VAL_REGRESSION = "regression";
const std::string XML_ATT_MODELNAME = "modelName";
const std::string XML_ATT_ALGORITHMNAME = "algorithmName";
const std::string XML_ATT_FIELDNAME = "fieldName";

// Mining schema.
const std::string XML_ELE_MININGSCHEMA = "MiningSchema";
const std::string XML_ELE_MININGFIELD = "MiningField";
const std::string XML_ATT_MININGFIELDNAME = "name";
const std::string XML_ATT_MININGFIELDUSE = "usageType";
const std::string XML_VAL_MININGFIELDACT = "active";
const std::string XML_VAL_MININGFIELDPRED = "predicted";
const std::string XML_ATT_MISSINGVALUEREPLACE = "missingValueReplacement";
const std::string XML_ATT_MISSINGVALUETREAT = "missingValueTreatment";
const std::string XML_VAL_ASIS = "asIs";
const std::string XML_VAL_ASVALUE = "asValue";
const std::string XML_VAL_ASMEAN = "asMean";
const std::string XML_VAL_ASMODE = "asMode";

// Output fields.
const std::string XML_ELE_OUTPUT = "Output";
const std::string XML_ELE_OUTPUTFIELD = "OutputField";
const std::string XML_ATT_FEATURE = "feature";
const std::string XML_VAL_ENTITYID = "entityId";
const std::string XML_VAL_PREDICTEDVALUE = "predictedValue";
const std::string XML_VAL_PROBABILITY = "probability";
const std::string XML_VAL_RESIDUAL = "residual";
const std::string XML_VAL_STANDARDERROR = "standardError";

// Model statistics, arrays and matrices.
const std::string XML_ELE_MODELSTATS = "ModelStats";
const std::string XML_ELE_UNIVARIATESTATS = "UnivariateStats";
const std::string XML_ELE_ARRAY = "Array";
const std::string XML_ATT_LOWER_N = "n";
const std::string XML_ATT_TYPE = "type";
const std::string XML_VAL_REAL = "real";
const std::string XML_VAL_INT = "int";
const std::string XML_ELE_MATRIX = "Matrix";
const std::string XML_ATT_KIND = "kind";
const std::string XML_VAL_DIAGONAL = "diagonal";
const std::string XML_ELE_COVARIANCES = "Covariances";
const std::string XML_ELE_PARTITION = "Partition";
const std::string XML_ELE_PARTITIONFIELDSTATS = "PartitionFieldStats";
const std::string XML_ATT_UPPER_N = "N";
const std::string XML_ELE_COUNTS = "Counts";
const std::string XML_ATT_TOTALFREQ = "totalFreq";
const std::string XML_ATT_INVALIDFREQ = "invalidFreq";
const std::string XML_ATT_MISSINGFREQ = "missingFreq";
const std::string XML_ELE_DISCRSTATS = "DiscrStats";
const std::string XML_ELE_NUMERICINFO = "NumericInfo";
const std::string XML_ATT_MINIMUM = "minimum";
const std::string XML_ATT_MAXIMUM = "maximum";
const std::string XML_ATT_MEAN = "mean";
const std::string XML_ATT_STDDEV = "standardDeviation";
const std::string XML_ATT_MEDIAN = "median";
const std::string XML_ELE_CONTSTATS = "ContStats";

// General regression model. XML_ELE_REGRESSMODEL names the general one; the plain "RegressionModel"
// is MCXPrsUtilTags::XML_ELE_RegressionModel.
const std::string XML_VAL_CONTAINERMODEL = "containerModel";
const std::string XML_ELE_REGRESSMODEL = "GeneralRegressionModel";
const std::string XML_ATT_RM_MODEL_TYPE = "modelType";
const std::string XML_ATT_RM_TARGET_VAR = "targetVariableName";
const std::string XML_ATT_RM_MODEL_NAME = "modelName";
const std::string XML_ELE_PARAMETERLIST = "ParameterList";
const std::string XML_ELE_PARAMETER = "Parameter";
const std::string XML_ATT_LABEL = "label";
const std::string XML_ELE_FACTORLIST = "FactorList";
const std::string XML_ELE_PREDICTOR = "Predictor";
const std::string XML_ELE_COVARIATELIST = "CovariateList";
const std::string XML_ELE_PPMATRIX = "PPMatrix";
const std::string XML_ELE_PPCELL = "PPCell";
const std::string XML_ATT_PREDICTORNAME = "predictorName";
const std::string XML_ATT_PARAMETERNAME = "parameterName";
const std::string XML_ATT_TARGETCATEGORY = "targetCategory";
const std::string XML_ELE_PCOVMATRIX = "PCovMatrix";
const std::string XML_VAL_MODEL = "model";
const std::string XML_VAL_ROBUST = "robust";
const std::string XML_ATT_MODELDF = "modelDF";
const std::string XML_ATT_TARGETREFERENCECATEGORY = "targetReferenceCategory";
const std::string XML_ELE_PCOVCELL = "PCovCell";
const std::string XML_ATT_TROW = "tRow";
const std::string XML_ATT_TCOL = "tCol";
const std::string XML_ATT_PROW = "pRow";
const std::string XML_ATT_PCOL = "pCol";
const std::string XML_ELE_PARAMMATRIX = "ParamMatrix";
const std::string XML_ELE_PCELL = "PCell";
const std::string XML_ATT_BETA = "beta";
const std::string XML_ATT_DF = "df";

}  // namespace MCPMMLTags

namespace MCXPrsUtilTags {

// Model elements.
const std::string XML_ELE_AssociationModel = "AssociationModel";
const std::string XML_ELE_ClusteringModel = "ClusteringModel";
const std::string XML_ELE_GeneralRegressionModel = "GeneralRegressionModel";
const std::string XML_ELE_MiningModel = "MiningModel";
const std::string XML_ELE_NaiveBayesModel = "NaiveBayesModel";
const std::string XML_ELE_NeuralNetwork = "NeuralNetwork";
const std::string XML_ELE_RegressionModel = "RegressionModel";
const std::string XML_ELE_RuleSetModel = "RuleSetModel";
const std::string XML_ELE_SequenceModel = "SequenceModel";
const std::string XML_ELE_SupportVectorMachineModel = "SupportVectorMachineModel";
const std::string XML_ELE_TextModel = "TextModel";
const std::string XML_ELE_TimeSeriesModel = "TimeSeriesModel";
const std::string XML_ELE_TreeModel = "TreeModel";

// Segmentation and predicates. SelectFirst, Equal and And are attribute values, their prefix
// notwithstanding.
const std::string XML_ELE_Segmentation = "Segmentation";
const std::string XML_ATT_MultipleModelMethod = "multipleModelMethod";
const std::string XML_ATT_SelectFirst = "selectFirst";
const std::string XML_ELE_Segment = "Segment";
const std::string XML_ELE_SimplePredicate = "SimplePredicate";
const std::string XML_ELE_CompoundPredicate = "CompoundPredicate";
const std::string XML_ATT_Operator = "operator";
const std::string XML_ATT_Equal = "equal";
const std::string XML_ATT_BooleanOperator = "booleanOperator";
const std::string XML_ATT_And = "and";
const std::string XML_ELE_LocalTransformations = "LocalTransformations";

}  // namespace MCXPrsUtilTags
