// Characters that are awkward on a command line, written as entities.
#pragma once

#include <QString>

/// The text with &lt; &gt; &quot; &apos; &amp; and the numeric entities of the German umlauts and
/// sharp s (&#196; &#214; &#220; &#228; &#246; &#252; &#223;) replaced by their characters. Nothing
/// else is decoded; the names are case-sensitive.
///
/// &amp; is decoded behind the other names and in front of the numbers, deliberately:
///
///     &amp;lt; gives &lt;    &amp;#196; gives the capital A with diaeresis
QString decodeEntities(QString text);
