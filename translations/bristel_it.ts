<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it_IT">
<context>
    <name>QObject</name>
    <message>
        <source>Serial Number: </source>
        <translation>Numero: </translation>
    </message>
    <message>
        <source>Invoice Number:</source>
        <translation>Fattura N.:</translation>
    </message>
    <message>
        <source>Delivery Number:</source>
        <translation>DDT N.:</translation>
    </message>
    <message>
        <source>Date:</source>
        <translation>Data:</translation>
    </message>
    <message>
        <source>Time:</source>
        <translation>Ora:</translation>
    </message>
    <message>
        <source>Table:</source>
        <translation>Tavolo:</translation>
    </message>
    <message>
        <source>Waiter:</source>
        <translation>Cameriere:</translation>
    </message>
    <message>
        <source>Note:</source>
        <translation>Note:</translation>
    </message>
    <message>
        <source>Credit:</source>
        <translation>Credito:</translation>
    </message>
    <message>
        <source>CUSTOMER</source>
        <translation>CLIENTE</translation>
    </message>
    <message>
        <source>Telephone:</source>
        <translation>Telefono:</translation>
    </message>
    <message>
        <source>License Number:</source>
        <translation>Partita IVA:</translation>
    </message>
    <message>
        <source>Fiscal Code:</source>
        <translation>Codice Fiscale:</translation>
    </message>
    <message>
        <source>Num</source>
        <translation>Q.tà</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Descrizione</translation>
    </message>
    <message>
        <source>Price</source>
        <translation>Prezzo</translation>
    </message>
    <message>
        <source>Amount</source>
        <translation>Importo</translation>
    </message>
    <message>
        <source>TOTAL</source>
        <translation>TOTALE</translation>
    </message>
    <message>
        <source>NOT A FISCAL DOCUMENT</source>
        <translation>DOCUMENTO NON FISCALE</translation>
    </message>
    <message>
        <source>Discount</source>
        <translation>Sconto</translation>
    </message>
    <message>
        <source>    Amount not paid: </source>
        <translation>    Importo non pagato: </translation>
    </message>
    <message>
        <source>Taxable</source>
        <translation>Imponibile</translation>
    </message>
    <message>
        <source>TaxRate</source>
        <translation>Aliquota</translation>
    </message>
    <message>
        <source>Tax</source>
        <translation>Imposta</translation>
    </message>
    <message>
        <source>SUMMARIES</source>
        <translation>RIEPILOGHI</translation>
    </message>
    <message>
        <source>BeginDate: </source>
        <translation>Dal: </translation>
    </message>
    <message>
        <source>EndDate: </source>
        <translation>Al: </translation>
    </message>
    <message>
        <source>PREFISCAL SUMMARY</source>
        <translation>RIEPILOGO PRECONTI</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Numero</translation>
    </message>
    <message>
        <source>RECEIPTS SUMMARY</source>
        <translation>RIEPILOGO RICEVUTE</translation>
    </message>
    <message>
        <source>Serials</source>
        <translation>Numerazione</translation>
    </message>
    <message>
        <source>Amount not paid: </source>
        <translation>Non pagato: </translation>
    </message>
    <message>
        <source>Cash: </source>
        <translation>Contanti: </translation>
    </message>
    <message>
        <source>Credit Card: </source>
        <translation>Carta di credito: </translation>
    </message>
    <message>
        <source>Bancomat: </source>
        <translation>Bancomat: </translation>
    </message>
    <message>
        <source>Other: </source>
        <translation>Altro: </translation>
    </message>
    <message>
        <source>TAXRATE</source>
        <translation>ALIQ.</translation>
    </message>
    <message>
        <source>TAXABLE</source>
        <translation>IMPONIBILE</translation>
    </message>
    <message>
        <source>TAX</source>
        <translation>IMPOSTA</translation>
    </message>
    <message>
        <source>AMOUNT</source>
        <translation>IMPORTO</translation>
    </message>
    <message>
        <source>INVOICES SUMMARY</source>
        <translation>RIEPILOGO FATTURE</translation>
    </message>
    <message>
        <source>CANCELLED DOC SUMMARY</source>
        <translation>RIEPILOGO DOC. ANNULLATI</translation>
    </message>
    <message>
        <source>SERIAL</source>
        <translation>NUMERO</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Data</translation>
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
        <source>receipt</source>
        <translation>ricevuta</translation>
    </message>
    <message>
        <source>PaperWindow</source>
        <translation>Carta</translation>
    </message>
    <message>
        <source>Insert a new sheet</source>
        <translation>Inserire un nuovo foglio</translation>
    </message>
</context>
<context>
    <name>PreviewPane</name>
    <message>
        <source>%1: &quot;%2&quot; is not a whole number from 0 to 1000</source>
        <translation>%1: &quot;%2&quot; non è un numero intero da 0 a 1000</translation>
    </message>
    <message>
        <source>The job shown as it would print under this configuration</source>
        <translation>Il documento come verrebbe stampato con questa configurazione</translation>
    </message>
    <message>
        <source>Other file...</source>
        <translation>Altro file...</translation>
    </message>
    <message>
        <source>Preview a job</source>
        <translation>Anteprima di un documento</translation>
    </message>
    <message>
        <source>Print jobs (*.xml *.escpos *.bin);;All files (*)</source>
        <translation>Documenti di stampa (*.xml *.escpos *.bin);;Tutti i file (*)</translation>
    </message>
    <message>
        <source>Cannot read the job %1</source>
        <translation>Impossibile leggere il documento %1</translation>
    </message>
    <message>
        <source>The job is longer than two metres of paper: only its start is shown</source>
        <translation>Il documento è più lungo di due metri di carta: se ne mostra solo l&apos;inizio</translation>
    </message>
</context>
</TS>
