<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>QObject</name>
    <message>
        <source>Serial Number: </source>
        <translation>Belegnummer: </translation>
    </message>
    <message>
        <source>Date:</source>
        <translation>Datum:</translation>
    </message>
    <message>
        <source>CUSTOMER</source>
        <translation>KUNDE</translation>
    </message>
    <message>
        <source>Telephone:</source>
        <translation>Telefon:</translation>
    </message>
    <message>
        <source>Num</source>
        <translation>Anz</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Bezeichnung</translation>
    </message>
    <message>
        <source>Price</source>
        <translation>Preis</translation>
    </message>
    <message>
        <source>Amount</source>
        <translation>Betrag</translation>
    </message>
    <message>
        <source>TOTAL</source>
        <translation>SUMME</translation>
    </message>
    <message>
        <source>    Amount not paid: </source>
        <translation>    Nicht bezahlt: </translation>
    </message>
    <message>
        <source>   Corrispettivo non pagato: </source>
        <translation>   Offener Betrag: </translation>
    </message>
</context>
</TS>
