// Small documents in which nearly everything that the readers look for occurs once. Some names and
// texts are longer than what fits into a string object or a local buffer, and some are no ASCII.
#ifndef MCXPRSUTIL_TESTS_SUPPORT_SMALLDOCUMENTS_H
#define MCXPRSUTIL_TESTS_SUPPORT_SMALLDOCUMENTS_H

namespace test_support {

inline constexpr char kPmml[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<PMML version="4.3"><Header copyright="none"/>
<DataDictionary>
 <DataField name="region, by its full name, which is long enough to need memory of its own"
  displayName="R&#233;gion du r&#233;pondant, en toutes lettres" dataType="string" optype="categorical">
  <Value value="the North of the country" displayValue="Nord, o&#249; il fait froid souvent"/>
  <Value value="the South of the country" displayValue="Sud, o&#249; il fait chaud souvent"/>
  <Value value="no answer was given" property="missing" displayValue="sans aucune r&#233;ponse"/>
 </DataField>
 <DataField name="age" displayName="Age" dataType="integer" optype="continuous">
  <Extension name="invalidRangeLower" value="150"/>
  <Value value=" 999 " property="missing" displayValue="refused to answer that"/>
 </DataField>
 <DataField name="grade" dataType="double" optype="ordinal">
  <Value value="1.00000000000000000000000000000000000000000000000000000000000000000000000"/>
  <Value value="2"/>
 </DataField>
</DataDictionary>
<TransformationDictionary>
 <DerivedField name="age_bin" dataType="string" optype="categorical">
  <Discretize field="age">
   <DiscretizeBin binValue="younger than most"><Interval closure="closedOpen" leftMargin="0" rightMargin="30"/></DiscretizeBin>
   <DiscretizeBin binValue="older than many of them"><Interval closure="closedOpen" leftMargin="30" rightMargin="99"/></DiscretizeBin>
  </Discretize>
 </DerivedField>
</TransformationDictionary>
<TreeModel functionName="classification">
 <MiningSchema><MiningField name="age"/></MiningSchema>
 <ModelStats>
  <UnivariateStats field="age"><Counts totalFreq="10"/>
   <NumericInfo minimum="1" maximum="99" mean="40" standardDeviation="3"/>
   <ContStats><Interval closure="openClosed" leftMargin="0" rightMargin="50"/>
    <Interval closure="openClosed" leftMargin="50" rightMargin="99"/>
    <Array type="real" n="2">4 6</Array></ContStats>
  </UnivariateStats>
  <UnivariateStats field="grade of whoever answered"><Counts totalFreq="10"/>
   <DiscrStats><Array type="int">4 6</Array></DiscrStats>
  </UnivariateStats>
 </ModelStats>
</TreeModel>
</PMML>
)";

inline constexpr char kSettings[] = R"(<PMML version="4.3">
<MiningBuildTask><Extension><Parameters>
 <Parameter name="depth" type="integer" value="5"/>
 <Parameter name="limit" type="double" value=" 0.5 "/>
 <Parameter name="prune" type="boolean" value="true"/>
 <Parameter name="method, by its full name, which is long enough to need memory of its own" type="string" value="m&#233;thode de mod&#233;lisation choisie"/>
 <Parameter name="inputs"><ListValue><Value value="the age of the respondent"/><Value value="sex"/></ListValue></Parameter>
 <Parameter name="target" value="the income of the household"/>
 <Parameter name="numbers"><ListValue><Value value="1"/><Value value="2"/></ListValue></Parameter>
 <Parameter name="ContPredictors" isList="true"><ListValue><Value value="the age of the respondent"/></ListValue></Parameter>
 <Parameter name="CatPredictors" value="the sex of the respondent"/>
 <Parameter name="FrequencyWeightVar" value="the weight of the respondent"/>
 <MatrixParmeter name="costs"><ArrayParameter><Value value="0"/><Value value="2"/></ArrayParameter>
  <ArrayParameter><Value value="1"/></ArrayParameter></MatrixParmeter>
 <ComplexParameter name="stopping"><Parameter name="limit" value="0.25"/></ComplexParameter>
</Parameters></Extension></MiningBuildTask>
<DataDictionary>
 <DataField name="sex of whoever answered" displayName="Sexe de la personne interrog&#233;e" dataType="string" optype="categorical">
  <Value value="the female half of all" displayValue="Femme, ou presque"/>
  <Value value="the male half of all" displayValue="Homme, ou presque"/>
  <Value value="the answer was refused" property="missing" displayValue="refus de r&#233;ponse"/>
 </DataField>
 <DataField name="age" dataType="integer" optype="continuous">
  <Interval closure="closedClosed" leftMargin="0" rightMargin="120"/>
  <Extension name="invalidRangeUpper" value="0"/>
 </DataField>
</DataDictionary>
<TransformationDictionary>
 <DerivedField name="age_bin" displayName="Tranche d'&#226;ge de la personne" dataType="string" optype="categorical">
  <Value value="younger than most"/>
  <Discretize field="age">
   <DiscretizeBin binValue="younger than most"><Interval closure="closedOpen" leftMargin="0" rightMargin="30"/></DiscretizeBin>
   <DiscretizeBin binValue="older than many of them"><Interval closure="closedOpen" leftMargin="30" rightMargin="99"/></DiscretizeBin>
  </Discretize>
 </DerivedField>
</TransformationDictionary>
</PMML>
)";

inline constexpr char kDataModel[] = R"(<DataModel><Fields>
<Field name="the age of the respondent" displayLabel="&#194;ge en ann&#233;es r&#233;volues" storage="integer" measure="continuous" role="input">
 <Range minValue="18" maxValue="99"/></Field>
<Field name="sex" storage="string" measure="nominal" role="target"><Values>
 <Value value="the female half of all" displayLabel="Femme, ou presque"/>
 <Value value="the male half of all" displayLabel="Homme, ou presque"/></Values></Field>
<Field name="grade" storage="real" measure="ordinal"><Values><Value value="1"/><Value value=" 2 "/></Values></Field>
<Field name="weight" storage="real" measure="continuous" role="freqWeight"/>
</Fields></DataModel>
)";

// Two models that can be combined, the second with a category and fields of its own.
inline constexpr char kFirstModel[] = R"(<PMML version="4.1"><Header copyright="none"/>
<DataDictionary numberOfFields="2">
 <DataField name="the age of the respondent" optype="continuous" dataType="double"/>
 <DataField name="answer" optype="categorical" dataType="string"><Value value="a yes, or nearly so"/></DataField>
</DataDictionary>
<TransformationDictionary><DerivedField name="the logarithm of the age" optype="continuous" dataType="double"><FieldRef field="the age of the respondent"/></DerivedField></TransformationDictionary>
<TreeModel functionName="classification"><MiningSchema><MiningField name="the age of the respondent"/><MiningField name="answer" usageType="predicted"/></MiningSchema>
<!-- the smallest tree --><Node score="a yes, or nearly so"><True/></Node></TreeModel></PMML>
)";

inline constexpr char kSecondModel[] = R"(<PMML version="4.2"><Header copyright="others"/>
<DataDictionary numberOfFields="3">
 <DataField name="the age of the respondent" optype="continuous" dataType="integer"/>
 <DataField name="answer" optype="categorical" dataType="string"><Value value="a no, with reasons given"/></DataField>
 <DataField name="the income of the household" optype="continuous" dataType="double"/>
</DataDictionary>
<TreeModel functionName="classification"><MiningSchema><MiningField name="the age of the respondent"/><MiningField name="the income of the household"/><MiningField name="answer" usageType="predicted"/></MiningSchema>
<Node score="a no, with reasons given"><True/></Node></TreeModel></PMML>
)";

}  // namespace test_support

#endif  // MCXPRSUTIL_TESTS_SUPPORT_SMALLDOCUMENTS_H
