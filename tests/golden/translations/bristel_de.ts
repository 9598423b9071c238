<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>QObject</name>
    <message>
        <source>Serial Number: </source>
        <translation>Bon Nr.: </translation>
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
        <translation>Tel.:</translation>
    </message>
    <message>
        <source>Num</source>
        <translation>Stk</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Artikel</translation>
    </message>
    <message>
        <source>Price</source>
        <translation>Preis</translation>
    </message>
    <message>
        <source>Amount</source>
        <translation>Summe</translation>
    </message>
    <message>
        <source>TOTAL</source>
        <translation>GESAMT</translation>
    </message>
    <message>
        <source>    Amount not paid: </source>
        <translation>    Offen: </translation>
    </message>
    <message>
        <source>   Corrispettivo non pagato: </source>
        <translation>   Offen: </translation>
    </message>
</context>
</TS>
