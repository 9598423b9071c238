<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it_IT">
<context>
    <name>QObject</name>
    <message>
        <source>Date</source>
        <translation>Data</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Causale</translation>
    </message>
    <message>
        <source>Amount</source>
        <translation>Importo</translation>
    </message>
    <message>
        <source>invoice</source>
        <translation>fattura</translation>
    </message>
    <message>
        <source>payment</source>
        <translation>pagamento</translation>
    </message>
    <message>
        <source>Invoice Number:</source>
        <translation>Fattura N.:</translation>
    </message>
</context>
</TS>
